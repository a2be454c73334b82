#pragma once

#include <functional>
#include <memory>
#include <string>

#include "app/single_instance.h"

namespace vantle {

// The one running copy of the program for a user. The first copy holds an exclusive lock on a
// file in the user's own temporary folder; the kernel lets go of the lock the moment the
// process ends, however it ends, so a crash never leaves a stale claim behind. A second start
// asks the running copy, by a notification to the user's processes, to bring its settings
// forward, and the running copy answers with one of its own. Main thread only.
class MacSingleInstance final : public SingleInstance {
public:
    // name tells the program's copies apart from every other program's: its bundle identifier.
    explicit MacSingleInstance(std::string name);
    ~MacSingleInstance() override;
    MacSingleInstance(const MacSingleInstance&) = delete;
    MacSingleInstance& operator=(const MacSingleInstance&) = delete;

    bool claim(std::function<void()> reopen) override;
    // Waits up to two seconds for the running copy's answer.
    bool askRunningCopyToReopen() const override;

private:
    // Holds the notification centre's observation, which only Objective-C++ can keep.
    struct Observation;

    std::string name_;
    int lock_ = -1;
    std::unique_ptr<Observation> observation_;
};

}  // namespace vantle
