#include "services/login/desktop_entry_linux.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

TEST(DesktopEntryTest, APlainPathIsWrittenAsItIs) {
    EXPECT_EQ(execArgument("/usr/bin/vantle-control"), "/usr/bin/vantle-control");
}

TEST(DesktopEntryTest, APathWithReservedCharactersIsQuotedAndEscaped) {
    EXPECT_EQ(execArgument("/opt/Vantle Control/bin/vantle-control"), "\"/opt/Vantle Control/bin/vantle-control\"");
    // Inside quotes, " ` $ and \ take a backslash; the value's own escaping then doubles every
    // backslash.
    EXPECT_EQ(execArgument("/opt/a\"b"), "\"/opt/a\\\\\"b\"");
    EXPECT_EQ(execArgument("/opt/$HOME"), "\"/opt/\\\\$HOME\"");
    EXPECT_EQ(execArgument("/opt/a\\b"), "\"/opt/a\\\\\\\\b\"");
    EXPECT_EQ(execArgument("/opt/it's"), "\"/opt/it's\"");
}

TEST(DesktopEntryTest, PercentSignsAreDoubledSoThatTheyAreNoFieldCodes) {
    EXPECT_EQ(execArgument("/opt/100%/vantle-control"), "/opt/100%%/vantle-control");
}

TEST(DesktopEntryTest, LineBreaksAndTabsUseTheValueEscapes) {
    EXPECT_EQ(execArgument("/opt/a\nb\tc"), "\"/opt/a\\nb\\tc\"");
}

TEST(DesktopEntryTest, TheAutostartEntryStartsTheGivenProgram) {
    const std::string text = autostartEntryText("/usr/bin/vantle-control");
    EXPECT_EQ(text.rfind("[Desktop Entry]\n", 0), 0u);
    EXPECT_NE(text.find("\nType=Application\n"), std::string::npos);
    EXPECT_NE(text.find("\nExec=/usr/bin/vantle-control\n"), std::string::npos);
    EXPECT_TRUE(entryStartsAtLogin(text));
}

TEST(DesktopEntryTest, TheHiddenEntryDoesNotStartTheProgram) {
    EXPECT_FALSE(entryStartsAtLogin(hiddenAutostartEntryText("/usr/bin/vantle-control")));
}

TEST(DesktopEntryTest, EntriesSwitchedOffOrWithoutCommandDoNotStartAtLogin) {
    EXPECT_FALSE(entryStartsAtLogin("[Desktop Entry]\nExec=/usr/bin/x\nHidden=true\n"));
    EXPECT_FALSE(entryStartsAtLogin("[Desktop Entry]\nExec=/usr/bin/x\nX-GNOME-Autostart-enabled=false\n"));
    EXPECT_FALSE(entryStartsAtLogin("[Desktop Entry]\nType=Application\n"));
    EXPECT_FALSE(entryStartsAtLogin("[Desktop Entry]\nExec=\n"));
    EXPECT_FALSE(entryStartsAtLogin("Exec=/usr/bin/x\n"));
    EXPECT_FALSE(entryStartsAtLogin(""));
}

TEST(DesktopEntryTest, ReadingToleratesBlanksCommentsAndWindowsLineEnds) {
    EXPECT_TRUE(entryStartsAtLogin("# ours\r\n[Desktop Entry]\r\nExec = /usr/bin/x\r\nHidden = false\r\n"));
    EXPECT_FALSE(entryStartsAtLogin("[Desktop Entry]\r\nExec=/usr/bin/x\r\nHidden = true \r\n"));
}

TEST(DesktopEntryTest, KeysOfOtherGroupsDoNotCount) {
    EXPECT_TRUE(entryStartsAtLogin("[Desktop Entry]\nExec=/usr/bin/x\n[Desktop Action quit]\nHidden=true\n"));
    EXPECT_FALSE(entryStartsAtLogin("[Desktop Action run]\nExec=/usr/bin/x\n[Desktop Entry]\nName=x\n"));
}

}  // namespace
}  // namespace vantle
