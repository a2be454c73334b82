#include "ui/popover_qt.h"

#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

#include "ui/scrolled_content_qt.h"

namespace vantle {

Popover::Popover() : QFrame(nullptr, Qt::Popup | Qt::FramelessWindowHint), scroll_(new QScrollArea(this)) {
    setFrameShape(QFrame::StyledPanel);
    // Named for the window list of assistive tools and tests; a popup shows no title.
    setWindowTitle(QStringLiteral("Vantle Control"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    layout->addWidget(scroll_);
}

void Popover::setContent(QWidget* content) {
    replaceScrolledContent(*scroll_, content);
}

void Popover::showAgainst(const QRect& anchor, QSize size) {
    const int frame = 2 * frameWidth();
    resize(size.width() + frame, size.height() + frame);
    QScreen* screen = anchor.isValid() ? QGuiApplication::screenAt(anchor.center()) : nullptr;
    if (screen == nullptr) {
        screen = QGuiApplication::primaryScreen();
    }
    const QRect area = screen != nullptr ? screen->availableGeometry() : QRect(0, 0, 1920, 1080);
    QPoint origin;
    if (anchor.isValid()) {
        // Below an icon in a top panel, above one in a bottom panel, centred on it.
        const bool below = anchor.center().y() < area.center().y();
        origin = QPoint(anchor.center().x() - width() / 2, below ? anchor.bottom() + 4 : anchor.top() - height() - 4);
    } else {
        origin = QPoint(area.right() - width() - 8, area.top() + 8);
    }
    origin.setX(std::clamp(origin.x(), area.left(), std::max(area.left(), area.right() - width() + 1)));
    origin.setY(std::clamp(origin.y(), area.top(), std::max(area.top(), area.bottom() - height() + 1)));
    move(origin);
    show();
    raise();
    activateWindow();
}

}  // namespace vantle
