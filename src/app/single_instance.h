#pragma once

#include <functional>

namespace vantle {

// The one running copy of the program in a login session. A second start finds the first, asks
// it to bring its settings forward and ends, instead of taking the keys and the status item a
// second time.
class SingleInstance {
public:
    virtual ~SingleInstance() = default;

    // Takes the session for this process; false when another copy holds it. Each request of a
    // later start then calls reopen on the main thread.
    virtual bool claim(std::function<void()> reopen) = 0;
    // Asks the copy holding the session to bring its settings forward and waits a moment for
    // its answer; false when no copy answered.
    virtual bool askRunningCopyToReopen() const = 0;
};

}  // namespace vantle
