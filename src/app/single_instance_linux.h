#pragma once

#include <QObject>
#include <functional>
#include <string>

class QSocketNotifier;

namespace vantle {

// The one running copy of the program in a session. The first copy holds a socket in the
// abstract namespace, which the kernel lets go of the moment the process ends, however it ends,
// so a crash never leaves a stale lock behind. A second start connects to that socket, asks the
// running copy to bring its settings forward, and ends.
class SingleInstance final : public QObject {
public:
    explicit SingleInstance(std::string name);
    ~SingleInstance() override;
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    // Takes the name for this process; false when another copy holds it. Each request of a later
    // start then calls reopen on the main thread.
    bool claim(std::function<void()> reopen);
    // Asks the copy holding the name to bring its settings forward and waits up to two seconds
    // for its answer; false when no copy answered.
    bool askRunningCopyToReopen() const;

private:
    void answer();

    std::string name_;
    int listener_ = -1;
    QSocketNotifier* notifier_ = nullptr;
    std::function<void()> reopen_;
};

}  // namespace vantle
