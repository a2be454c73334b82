// The application's windows in this process: what the settings window's controls show.
#include <QCheckBox>
#include <QPalette>

#include "in_process_app_fixture.h"
#include "ui/settings_window_qt.h"
#include "ui/text_colour_qt.h"

namespace vantle::testing {
namespace {

class AppWindowTest : public InProcessAppTest {
protected:
    static SettingsWindow* settingsWindow() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* window = dynamic_cast<SettingsWindow*>(widget)) {
                return window;
            }
        }
        return nullptr;
    }
    static std::vector<QWidget*> shownWindows() {
        std::vector<QWidget*> shown;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible()) {
                shown.push_back(widget);
            }
        }
        return shown;
    }
};

TEST_F(AppWindowTest, TheSettingsPageIsMadeWhenTheWindowIsFirstShownNotAtStart) {
    launch();
    SettingsWindow* window = settingsWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(window->scrollArea().widget(), nullptr);

    app->show();
    pump(100ms);
    ASSERT_NE(window->scrollArea().widget(), nullptr);
    EXPECT_TRUE(window->scrollArea().widget()->isVisible());
    // The first page's long-lived check boxes (launch at login among them) are placed on it.
    EXPECT_FALSE(window->scrollArea().widget()->findChildren<QCheckBox*>().isEmpty());
}

TEST_F(AppWindowTest, AStatusLineSaidWhileNoPageIsMadeOpensNoWindowOfItsOwn) {
    launch();
    const std::vector<QWidget*> before = shownWindows();
    const std::string text = "A report while the settings are closed";
    app->report(text);
    pump(100ms);
    QLabel* message = labelShowing(text);
    ASSERT_NE(message, nullptr);
    EXPECT_FALSE(message->isWindow());
    EXPECT_FALSE(message->isVisible());
    EXPECT_EQ(shownWindows(), before);

    // Shown later, the page carries the line.
    app->show();
    pump(100ms);
    EXPECT_TRUE(message->isVisible());
    EXPECT_EQ(message->window(), settingsWindow());
}

TEST_F(AppWindowTest, MessageLineIsDrawnInTheSecondaryColour) {
    launch({"--suppress-keyboard-invitation", "--show-settings"});
    const std::string text = "A report from a command";
    app->report(text);
    pump(100ms);
    QLabel* message = labelShowing(text);
    ASSERT_NE(message, nullptr);
    EXPECT_TRUE(message->isVisible());
    const QColor drawn = message->palette().color(QPalette::WindowText);
    EXPECT_EQ(drawn, colourOf(TextColour::secondaryLabel));
    // Quieter than the plain text of the other labels.
    EXPECT_NE(drawn, QApplication::palette().color(QPalette::WindowText));
}

}  // namespace
}  // namespace vantle::testing
