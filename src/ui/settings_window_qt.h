#pragma once

#include <QScrollArea>
#include <QWidget>

namespace vantle {

// The settings window. It lives as long as the program: closing and minimising only hide it, so
// that it comes back with the page and the controls it had.
class SettingsWindow final : public QWidget {
public:
    SettingsWindow();

    // Replaces the page's content; the old content is deleted once the event loop is back.
    void setContent(QWidget* content);
    QScrollArea& scrollArea() { return *scroll_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QScrollArea* scroll_;
};

}  // namespace vantle
