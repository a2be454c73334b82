// The program's icon over a button that the system draws itself, as the macOS menu bar's status
// item is: a stand-in button takes the place of the menu bar's, and the menu opens on a private
// Xvfb.
#include <QApplication>
#include <QMenu>
#include <QRect>
#include <chrono>
#include <thread>

#include "localization/localization.h"
#include "ui/status_button.h"
#include "x_server_fixture.h"

namespace vantle::testing {
namespace {

struct StandInMenuBarButton final : StatusButton {
    void setToolTip(const std::string& text) override { toolTip = text; }
    std::optional<ScreenFrame> geometry() const override { return frame; }
    bool visible() const override { return frame.has_value(); }

    std::function<void()> clicked;
    std::function<void()> contextClicked;
    std::string toolTip;
    std::optional<ScreenFrame> frame;
};

class StandInMenuBarButtonTest : public XServerTest {
protected:
    StandInMenuBarButtonTest() {
        static int argc = 1;
        static char name[] = "button_status_icon_test";
        static char* argv[] = {name, nullptr};
        qputenv("QT_QPA_PLATFORM", "xcb");
        application = std::make_unique<QApplication>(argc, argv);
        menu = std::make_unique<QMenu>();
        menu->addAction(QStringLiteral("Quit"));
        icon = makeButtonStatusIcon(
            [this](std::function<void()> onClick, std::function<void()> onContextClick) {
                auto made = std::make_unique<StandInMenuBarButton>();
                made->clicked = std::move(onClick);
                made->contextClicked = std::move(onContextClick);
                button = made.get();
                return made;
            },
            [this] { ++clicks; });
    }
    ~StandInMenuBarButtonTest() override {
        icon.reset();
        menu.reset();
        application.reset();
    }

    void settle() {
        const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(300);
        while (std::chrono::steady_clock::now() < until) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }

    std::unique_ptr<QApplication> application;
    std::unique_ptr<QMenu> menu;
    StandInMenuBarButton* button = nullptr;
    std::unique_ptr<StatusIcon> icon;
    int clicks = 0;
};

TEST_F(StandInMenuBarButtonTest, AClickCallsTheActionAndOpensNoMenu) {
    icon->finish(menu.get());
    ASSERT_NE(button, nullptr);
    button->frame = ScreenFrame{600, 0, 24, 22};
    button->clicked();
    settle();
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(menu->isVisible());
}

TEST_F(StandInMenuBarButtonTest, AContextClickOpensTheMainMenuJustBelowTheButton) {
    icon->finish(menu.get());
    button->frame = ScreenFrame{600, 0, 24, 22};
    button->contextClicked();
    settle();
    EXPECT_EQ(clicks, 0);
    ASSERT_TRUE(menu->isVisible());
    // The first row under the button's 22 rows.
    EXPECT_EQ(menu->geometry().top(), 22);
    EXPECT_EQ(menu->geometry().left(), 600);
}

TEST_F(StandInMenuBarButtonTest, AContextClickBeforeTheMenuIsGivenDoesNothing) {
    button->contextClicked();
    settle();
    EXPECT_FALSE(menu->isVisible());
}

TEST_F(StandInMenuBarButtonTest, ItsPlaceIsTheButtonsAndNoneWhileTheMenuBarHasNotPlacedIt) {
    EXPECT_FALSE(icon->geometry().isValid());
    EXPECT_FALSE(icon->visible());
    button->frame = ScreenFrame{600, 0, 24, 22};
    EXPECT_EQ(icon->geometry(), QRect(600, 0, 24, 22));
    EXPECT_TRUE(icon->visible());
}

TEST_F(StandInMenuBarButtonTest, FinishingGivesTheButtonTheProgramsToolTip) {
    icon->finish(menu.get());
    EXPECT_EQ(button->toolTip, L("s024"));
    EXPECT_FALSE(button->toolTip.empty());
}

}  // namespace
}  // namespace vantle::testing
