#pragma once

#include <QObject>

#include <memory>

namespace tavero {

// There is one Tavero in a session. Starting it again brings forward the one that runs.
class Instance : public QObject {
    Q_OBJECT

  signals:
    // The user started Tavero again.
    void activated();
};

// Claims the session for this process. Null if another process has it: that one was asked to come
// forward, and this one should end. On a desktop that cannot tell, everybody gets an instance.
// Defined by the one platform that is linked in.
std::unique_ptr<Instance> claimInstance();

} // namespace tavero
