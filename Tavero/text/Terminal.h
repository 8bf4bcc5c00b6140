#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <termios.h>

namespace tavero {

// The terminal that the program was started in. While it is a terminal, pictures replace each other
// on a screen of their own, keys arrive at once and the old screen comes back at the end, also on
// Ctrl-C, Ctrl-Z and a closing window. Where the output goes to a file or a pipe, pictures follow
// each other as plain text. One at a time.
class Terminal : public QObject {
    Q_OBJECT

  public:
    Terminal();
    ~Terminal() override;

    bool isInteractive() const { return isInteractive_; }
    bool isColored() const;
    int columns() const; // 80 where nobody knows

    // Lines beyond the height of the screen are left out.
    void show(const std::vector<std::string>& lines);

  signals:
    void resized();
    void keyPressed(char key);
    void endRequested(); // q, Ctrl-C, the end of the input, a signal to end

  private:
    void enter();
    void leave();
    void suspend();
    void readKeys();
    void readSignals();

    bool isInteractive_ = false;
    bool isEntered_ = false;
    termios original_{};
    std::optional<QSocketNotifier> keys_;
    std::optional<QSocketNotifier> signals_;
};

} // namespace tavero
