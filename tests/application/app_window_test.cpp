// The application's windows in this process: what the settings window's controls show.
#include <QPalette>

#include "in_process_app_fixture.h"
#include "ui/text_colour_qt.h"

namespace vantle::testing {
namespace {

class AppWindowTest : public InProcessAppTest {};

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
