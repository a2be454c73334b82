#pragma once

class QMenu;
class QRect;

namespace vantle {

// The program's icon in the desktop's tray or the menu bar. A click opens or closes the
// popover; a context click opens the program's main menu. Each platform makes its own (see
// Platform::makeStatusIcon), in two steps: the icon shows as soon as it is made, and finish()
// gives it the rest before the event loop first runs.
class StatusIcon {
public:
    virtual ~StatusIcon() = default;

    // Gives the icon its context menu, its tooltip and its final artwork. Called once.
    virtual void finish(QMenu* menu) = 0;
    // Where the icon sits on the screen; empty while the tray or menu bar has not placed it.
    virtual QRect geometry() const = 0;
    virtual bool visible() const = 0;
};

}  // namespace vantle
