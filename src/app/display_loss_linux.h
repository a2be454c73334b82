#pragma once

#include "app/session_end.h"

namespace vantle {

// Qt's X11 platform ends the process with exit(1) the moment it finds its connection to the X
// server broken, from deep inside the event loop, where nothing of ours would run and the
// outputs we muted would stay silent. This watches for that moment and ends the program on our
// terms instead: the muted levels are given back, the gamma ramps too where the X server is
// still there, one line on standard error says what happened, and the process exits with
// status 1. Made on the main thread once the application has started; the watch ends with the
// object, before the application does.
class DisplayLossWatch final : public SessionEndWatch {
public:
    explicit DisplayLossWatch(SessionEndHandler& handler);
    ~DisplayLossWatch() override;
    DisplayLossWatch(const DisplayLossWatch&) = delete;
    DisplayLossWatch& operator=(const DisplayLossWatch&) = delete;
};

}  // namespace vantle
