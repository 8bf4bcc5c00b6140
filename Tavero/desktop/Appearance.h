#pragma once

#include <QObject>

#include <memory>

namespace tavero {

// How the user wants every application to look and to move. The defaults are in force until the
// desktop answers, and for good on one that doesn't.
struct Look {
    bool isDark = false;
    bool reducesMotion = false;

    bool operator==(const Look&) const = default;
};

// The desktop's look, as it is now. Main thread only.
class Appearance : public QObject {
    Q_OBJECT

  public:
    const Look& look() const { return look_; }

    // Setting the look that is in force notifies nobody.
    void set(const Look& look);

  signals:
    void changed();

  private:
    Look look_;
};

// The look of this desktop, which it follows. Returns at once; the desktop's answer comes later
// through changed(). Defined by the one platform that is linked in.
std::unique_ptr<Appearance> hostAppearance();

} // namespace tavero
