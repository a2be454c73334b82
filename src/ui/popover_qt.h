#pragma once

#include <QFrame>
#include <QScrollArea>

namespace vantle {

// The quick controls under the tray icon: a borderless popup that closes as soon as the user
// clicks anywhere else, and scrolls when it is taller than its screen allows.
class Popover final : public QFrame {
public:
    Popover();

    // Replaces the content; the old content is deleted once the event loop is back.
    void setContent(QWidget* content);
    QScrollArea& scrollArea() { return *scroll_; }
    // Shows the popup with its content size, next to anchor (the tray icon), inside the screen.
    void showAgainst(const QRect& anchor, QSize size);

private:
    QScrollArea* scroll_;
};

}  // namespace vantle
