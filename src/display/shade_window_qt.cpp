#include "display/shade_window_qt.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWidget>

namespace vantle {

ShadeWindow::ShadeWindow() : window_(std::make_unique<QWidget>()) {
    // Above full-screen windows, never focused, and left alone by the window manager, so that it
    // covers the whole screen including panels and docks.
    window_->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                            Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus |
                            Qt::X11BypassWindowManagerHint | Qt::NoDropShadowWindowHint);
    window_->setAttribute(Qt::WA_ShowWithoutActivating);
    window_->setAttribute(Qt::WA_TransparentForMouseEvents);
    window_->setFocusPolicy(Qt::NoFocus);
    // The X server fills the window with black itself; the toolkit never paints it, which would
    // cost a full-screen image upload at every change of level.
    window_->setAttribute(Qt::WA_NoSystemBackground);
    window_->setAttribute(Qt::WA_OpaquePaintEvent);
    window_->setAttribute(Qt::WA_PaintOnScreen);
    window_->setWindowTitle(QStringLiteral("Vantle Control shade"));
    window_->winId();
    if (auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        const std::uint32_t black = 0;
        xcb_change_window_attributes(x11->connection(), static_cast<xcb_window_t>(window_->winId()), XCB_CW_BACK_PIXEL,
                                     &black);
    }
}

ShadeWindow::~ShadeWindow() = default;

void ShadeWindow::setUp(const ScreenFrame& frame) {
    window_->setGeometry(frame.x, frame.y, frame.width, frame.height);
}

void ShadeWindow::setAlpha(double alpha) {
    window_->setWindowOpacity(alpha);
}

void ShadeWindow::orderOut() {
    window_->hide();
}

void ShadeWindow::orderFrontRegardless() {
    // Raised as it appears. The window manager never restacks it (it bypasses the manager), so
    // once shown it stays above every managed window, full-screen ones included; only other
    // unmanaged windows, such as menus and the on-screen display, may come above it, as they
    // should. Raising again at every change of level would make a compositor repaint the whole
    // screen each time.
    if (!window_->isVisible()) {
        window_->show();
        window_->raise();
    }
}

}  // namespace vantle
