#include "display/shade_window_qt.h"

#include <QPalette>
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
    QPalette palette = window_->palette();
    palette.setColor(QPalette::Window, Qt::black);
    window_->setPalette(palette);
    window_->setAutoFillBackground(true);
    window_->setWindowTitle(QStringLiteral("Vantle Control shade"));
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
    window_->show();
    window_->raise();
}

}  // namespace vantle
