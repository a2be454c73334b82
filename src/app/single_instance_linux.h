#pragma once

#include <QObject>
#include <functional>
#include <string>

#include "app/single_instance.h"

class QSocketNotifier;

namespace vantle {

// The one running copy of the program in a session. The first copy holds a socket in the
// abstract namespace, which the kernel lets go of the moment the process ends, however it ends,
// so a crash never leaves a stale lock behind. A second start connects to that socket, asks the
// running copy to bring its settings forward, and ends.
class SocketSingleInstance final : public QObject, public SingleInstance {
public:
    explicit SocketSingleInstance(std::string name);
    ~SocketSingleInstance() override;
    SocketSingleInstance(const SocketSingleInstance&) = delete;
    SocketSingleInstance& operator=(const SocketSingleInstance&) = delete;

    // Takes the name for this process. Waits up to two seconds for the running copy's answer
    // when asking it to reopen.
    bool claim(std::function<void()> reopen) override;
    bool askRunningCopyToReopen() const override;

private:
    void answer();

    std::string name_;
    int listener_ = -1;
    QSocketNotifier* notifier_ = nullptr;
    std::function<void()> reopen_;
};

}  // namespace vantle
