#include "display/shade_window_x11.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>

namespace vantle {

ShadeWindow::ShadeWindow() : window_(std::make_unique<QWindow>()) {
    // Above full-screen windows, never focused, and left alone by the window manager, so that it
    // covers the whole screen including panels and docks.
    window_->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowTransparentForInput |
                      Qt::WindowDoesNotAcceptFocus | Qt::X11BypassWindowManagerHint | Qt::NoDropShadowWindowHint);
    window_->setTitle(QStringLiteral("Vantle Control shade"));
    window_->create();
    // A bare window that is never painted: the X server fills it with its background, black, so
    // that no full-screen image is ever uploaded.
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
    window_->setOpacity(alpha);
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

void ShadeWindow::raise() {
    if (window_->isVisible()) {
        window_->raise();
    }
}

}  // namespace vantle
