#include <QMenu>
#include <QPoint>
#include <QRect>

#include "localization/localization.h"
#include "ui/status_button.h"

namespace vantle {
namespace {

class ButtonStatusIcon final : public StatusIcon {
public:
    ButtonStatusIcon(const StatusButtonMaker& make, std::function<void()> clicked)
        : button_(make(std::move(clicked), [this] { openMenu(); })) {}

    void finish(QMenu* menu) override {
        menu_ = menu;
        if (button_) {
            button_->setToolTip(L("s024"));
        }
    }

    QRect geometry() const override {
        const std::optional<ScreenFrame> frame = button_ ? button_->geometry() : std::nullopt;
        return frame ? QRect(frame->x, frame->y, frame->width, frame->height) : QRect();
    }

    bool visible() const override { return button_ && button_->visible(); }

private:
    // Opened below the button, as the menu bar's own menus are; at the pointer while the menu
    // bar has not placed the button.
    void openMenu() {
        if (menu_ == nullptr) {
            return;
        }
        const QRect anchor = geometry();
        menu_->popup(anchor.isValid() ? anchor.bottomLeft() + QPoint(0, 1) : QCursor::pos());
    }

    QMenu* menu_ = nullptr;
    // Made last: its clicks reach the members above.
    std::unique_ptr<StatusButton> button_;
};

}  // namespace

std::unique_ptr<StatusIcon> makeButtonStatusIcon(const StatusButtonMaker& make, std::function<void()> clicked) {
    return std::make_unique<ButtonStatusIcon>(make, std::move(clicked));
}

}  // namespace vantle
