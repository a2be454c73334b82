#pragma once

#include "display/brightness.h"

namespace vantle {

// Everything behind the process-wide Brightness on this platform: the window system's screens,
// the shades and the native controls. With no window system to talk to (a headless machine),
// there are simply no screens, so the check modes still run.
class DisplayBackends {
public:
    virtual ~DisplayBackends() = default;
    virtual Brightness& brightness() = 0;
    // The attached displays changed: match each native control to its displays again.
    virtual void matchNativeControls() = 0;
    // The window system's connection broke: puts back the dimming of the displays where the window
    // system still answers a fresh connection. Nothing else of the old connection is used.
    virtual void displayWentAway() = 0;
    // Undoes the dimming that an earlier copy of the program could not undo because it crashed,
    // and forgets it. Only the copy that has just taken the session may call this: a check mode or
    // a second start runs beside a copy whose dimming is still its own to undo.
    virtual void undoDimmingOfAnEarlierCopy() = 0;
};

}  // namespace vantle
