#include "ui/settings_window_qt.h"

#include <QCloseEvent>
#include <QTimer>
#include <QVBoxLayout>

#include "localization/localization.h"
#include "ui/scrolled_content_qt.h"

namespace vantle {

SettingsWindow::SettingsWindow() : scroll_(new QScrollArea(this)) {
    setWindowTitle(QString::fromStdString(L("s025")));
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint | Qt::WindowMinimizeButtonHint);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    layout->addWidget(scroll_);
    resize(680, 730);
}

void SettingsWindow::setContent(QWidget* content) {
    replaceScrolledContent(*scroll_, content);
}

void SettingsWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    hide();
}

void SettingsWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && isMinimized()) {
        // Hidden instead of minimised: the program has no place to minimise to. The state is
        // reset after the event, so that showing the window again shows it normally.
        QTimer::singleShot(0, this, [this] {
            setWindowState(windowState() & ~Qt::WindowMinimized);
            hide();
        });
    }
}

}  // namespace vantle
