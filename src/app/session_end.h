#pragma once

namespace vantle {

// What a muted output's levels came to when the program had to end without its windows.
enum class DisplayLossOutcome { nothingMuted, levelsGivenBack, levelsKept };

// How the end of the session reaches the application. The platform calls these on the main
// thread: the session is logging out (a termination signal, the system's log-out request), or
// the connection to the window system broke.
class SessionEndHandler {
public:
    virtual ~SessionEndHandler() = default;
    // Nobody is there to answer a question: the levels are given back without asking, and the
    // event loop ends.
    virtual void endSession() = 0;
    // The window system went away: gives the muted levels back, and the dimming where the
    // window system still answers, without touching any window. The platform ends the process
    // afterwards.
    virtual DisplayLossOutcome displayWentAway() = 0;
};

// Watches for the end of the session while it lives; made once the application has started.
class SessionEndWatch {
public:
    virtual ~SessionEndWatch() = default;
};

}  // namespace vantle
