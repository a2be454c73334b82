#include "dock/tool_commands.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "dock/testing/fake_dock_tools.h"
#include "localization/localization.h"

namespace vantle {
namespace {

class ToolCommandsTest : public ::testing::Test {
protected:
    std::filesystem::path defaults() const { return tools.tool(kDefaultsTool); }
    testing::FakeDockTools tools;
    const std::vector<std::string> read{"read", "x"};
};

TEST_F(ToolCommandsTest, SuccessReturnsStandardOutput) {
    tools.setApps({});
    const auto output = runTool(tools, defaults(), {"export", "com.apple.dock", "-"});
    ASSERT_TRUE(output);
    EXPECT_NE(output->find("persistent-apps"), std::string::npos);
}

TEST_F(ToolCommandsTest, RunFailureCarriesExitStatusAndErrorOutput) {
    tools.failures["defaults read x"] = 1;
    tools.failureStatus = 3;
    tools.failureText = "The domain/default pair of (x) does not exist\n";
    const auto output = runTool(tools, defaults(), read);
    ASSERT_FALSE(output);
    EXPECT_EQ(output.error(), (CommandError{"VantleControl", 3, "The domain/default pair of (x) does not exist\n"}));
}

TEST_F(ToolCommandsTest, RunFailureWithoutErrorOutputHasAnEmptyText) {
    tools.failures["defaults read x"] = 1;
    tools.failureText = "";
    const auto output = runTool(tools, defaults(), read);
    ASSERT_FALSE(output);
    EXPECT_EQ(output.error(), (CommandError{"VantleControl", 1, ""}));
}

TEST_F(ToolCommandsTest, RunFailureWithErrorOutputThatIsNotUtf8ShowsTheUnreadableToolText) {
    tools.failures["defaults read x"] = 1;
    tools.failureText = "bad \xFF\xFE bytes";
    const auto output = runTool(tools, defaults(), read);
    ASSERT_FALSE(output);
    EXPECT_EQ(output.error(), (CommandError{"VantleControl", 1, L("s112")}));
}

TEST_F(ToolCommandsTest, ToolThatCannotStartGivesTheSystemError) {
    tools.missingTools.insert("defaults");
    const auto output = runTool(tools, defaults(), read);
    ASSERT_FALSE(output);
    EXPECT_EQ(output.error(), posixError(ENOENT));
    EXPECT_EQ(runDockCommand(tools, defaults(), read).error(), posixError(ENOENT));
}

TEST_F(ToolCommandsTest, DockCommandFailureIsTheCoordinatorsErrorWithTheStatus) {
    tools.failures["defaults read x"] = 1;
    tools.failureStatus = 5;
    const auto output = runDockCommand(tools, defaults(), read);
    ASSERT_FALSE(output);
    EXPECT_EQ(output.error(), (CommandError{"VantleControl.Dock", 1, L("s119", 5)}));
}

TEST_F(ToolCommandsTest, DockCommandDiscardsErrorOutput) {
    tools.failures["defaults read x"] = 1;
    tools.failureText = "noise\n";
    EXPECT_EQ(runDockCommand(tools, defaults(), read).error().description, L("s119", 1));
}

}  // namespace
}  // namespace vantle
