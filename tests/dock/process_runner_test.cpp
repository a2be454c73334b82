#include "dock/process_runner_linux.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <signal.h>

#include "dock/dock_platform.h"
#include "dock/file_icons_linux.h"
#include "dock/tool_commands.h"
#include "localization/localization.h"
#include "support/temporary_directory.h"

namespace vantle {
namespace {

namespace fs = std::filesystem;

class PosixProcessRunnerTest : public ::testing::Test {
protected:
    Expected<ProcessExit> shell(const std::string& script, ErrorOutput errorOutput = ErrorOutput::capture,
                                std::vector<std::string> extra = {}) {
        std::vector<std::string> arguments{"-c", script, "sh"};
        arguments.insert(arguments.end(), extra.begin(), extra.end());
        return runner.execute("/bin/sh", arguments, errorOutput);
    }
    PosixProcessRunner runner;
};

TEST_F(PosixProcessRunnerTest, OutputStatusAndErrorOutputOfARealChild) {
    const auto exit = shell("printf out; printf err >&2; exit 3");
    ASSERT_TRUE(exit);
    EXPECT_EQ(exit->status, 3);
    EXPECT_EQ(exit->standardOutput, "out");
    EXPECT_EQ(exit->standardError, "err");
}

TEST_F(PosixProcessRunnerTest, DiscardedErrorOutputIsNotReturned) {
    const auto exit = shell("printf out; printf err >&2", ErrorOutput::discard);
    ASSERT_TRUE(exit);
    EXPECT_EQ(exit->status, 0);
    EXPECT_EQ(exit->standardOutput, "out");
    EXPECT_EQ(exit->standardError, "");
}

TEST_F(PosixProcessRunnerTest, LargeOutputOnBothPipesDoesNotStall) {
    const auto exit = shell("head -c 3000000 /dev/zero >&2; head -c 2000000 /dev/zero");
    ASSERT_TRUE(exit);
    EXPECT_EQ(exit->standardOutput.size(), 2000000u);
    EXPECT_EQ(exit->standardError.size(), 3000000u);
}

TEST_F(PosixProcessRunnerTest, ArgumentsArriveExactlyWithoutAShell) {
    const auto exit = shell("printf '%s|' \"$@\"", ErrorOutput::capture, {"a b", "<x>\n</x>", "", "$HOME"});
    ASSERT_TRUE(exit);
    EXPECT_EQ(exit->standardOutput, "a b|<x>\n</x>||$HOME|");
}

TEST_F(PosixProcessRunnerTest, StandardInputIsEmpty) {
    const auto exit = runner.execute("/bin/cat", {}, ErrorOutput::capture);
    ASSERT_TRUE(exit);
    EXPECT_EQ(exit->standardOutput, "");
    EXPECT_EQ(exit->status, 0);
}

TEST_F(PosixProcessRunnerTest, ToolEndedBySignalReportsTheSignal) {
    const auto exit = shell("kill -KILL $$");
    ASSERT_TRUE(exit);
    EXPECT_EQ(exit->status, SIGKILL);
}

TEST_F(PosixProcessRunnerTest, MissingToolIsTheSystemsError) {
    const auto exit = runner.execute("/nonexistent/defaults", {}, ErrorOutput::capture);
    ASSERT_FALSE(exit);
    EXPECT_EQ(exit.error(), posixError(ENOENT));
    EXPECT_EQ(exit.error().domain, "NSPOSIXErrorDomain");
}

TEST_F(PosixProcessRunnerTest, FileThatIsNoProgramCannotStart) {
    testing::TemporaryDirectory folder;
    testing::writeFile(folder.path() / "defaults", "plain text");
    const auto exit = runner.execute(folder.path() / "defaults", {}, ErrorOutput::discard);
    ASSERT_FALSE(exit);
    EXPECT_EQ(exit.error(), posixError(EACCES));
}

TEST_F(PosixProcessRunnerTest, RunToolGivesTheToolsOwnWords) {
    const auto output = runTool(runner, "/bin/sh", {"-c", "echo 'No such domain' >&2; exit 4"});
    ASSERT_FALSE(output);
    EXPECT_EQ(output.error(), (CommandError{"VantleControl", 4, "No such domain\n"}));
}

TEST_F(PosixProcessRunnerTest, RunToolWithErrorOutputThatIsNotUtf8ShowsTheUnreadableText) {
    const auto output = runTool(runner, "/bin/sh", {"-c", "printf 'bad \\377\\376' >&2; exit 2"});
    ASSERT_FALSE(output);
    EXPECT_EQ(output.error(), (CommandError{"VantleControl", 2, L("s112")}));
}

TEST_F(PosixProcessRunnerTest, DockCommandFailureCarriesOnlyTheStatus) {
    const auto output = runDockCommand(runner, "/bin/sh", {"-c", "echo words >&2; exit 7"});
    ASSERT_FALSE(output);
    EXPECT_EQ(output.error(), (CommandError{"VantleControl.Dock", 1, L("s119", 7)}));
}

TEST_F(PosixProcessRunnerTest, SuccessfulRunReturnsStandardOutput) {
    EXPECT_EQ(*runTool(runner, "/bin/sh", {"-c", "printf hi; echo noise >&2"}), "hi");
}

TEST(DockPlatformTest, SystemToolsMeanNoDockHere) {
    EXPECT_FALSE(dockAvailable(PosixProcessRunner()));
    EXPECT_EQ(PosixProcessRunner().tool("defaults"), fs::path("/usr/bin/defaults"));
}

TEST(DockPlatformTest, StandInToolsMakeTheDockAvailable) {
    EXPECT_TRUE(dockAvailable(PosixProcessRunner("/tmp/stand-ins")));
}

TEST(DockPlatformTest, ToolFolderComesFromTheEnvironmentOnlyWhenAbsolute) {
    ::unsetenv("VANTLE_DOCK_TOOLS");
    EXPECT_EQ(dockToolDirectory(), fs::path("/usr/bin"));
    ::setenv("VANTLE_DOCK_TOOLS", "relative/tools", 1);
    EXPECT_EQ(dockToolDirectory(), fs::path("/usr/bin"));
    ::setenv("VANTLE_DOCK_TOOLS", "/opt/stand-ins", 1);
    EXPECT_EQ(dockToolDirectory(), fs::path("/opt/stand-ins"));
    ::unsetenv("VANTLE_DOCK_TOOLS");
}

TEST(DockPlatformTest, ApplicationDataFollowsTheFreedesktopRules) {
    ::setenv("XDG_DATA_HOME", "/data/ann", 1);
    EXPECT_EQ(applicationSupportDirectory(), fs::path("/data/ann"));
    ::unsetenv("XDG_DATA_HOME");
    ::setenv("HOME", "/home/ann", 1);
    EXPECT_EQ(applicationSupportDirectory(), fs::path("/home/ann/.local/share"));
}

TEST(DirectoryFileIconsTest, FolderGetsTheImageAndAnEntryNamingIt) {
    testing::TemporaryDirectory folder;
    const fs::path bundle = folder.path() / "S\xC3\xA9parateur.app";
    fs::create_directories(bundle);
    DirectoryFileIcons icons;
    ASSERT_TRUE(icons.setIcon("image bytes", bundle));
    EXPECT_EQ(testing::readFile(bundle / ".icon.png"), "image bytes");
    EXPECT_EQ(testing::readFile(bundle / ".directory"), "[Desktop Entry]\nIcon=" + (bundle / ".icon.png").string() + "\n");
    ASSERT_TRUE(icons.setIcon("other", bundle));
    EXPECT_EQ(testing::readFile(bundle / ".icon.png"), "other");
}

TEST(DirectoryFileIconsTest, FilesAndMissingTargetsAreRefused) {
    testing::TemporaryDirectory folder;
    testing::writeFile(folder.path() / "file", "x");
    DirectoryFileIcons icons;
    EXPECT_FALSE(icons.setIcon("image", folder.path() / "file"));
    EXPECT_FALSE(icons.setIcon("image", folder.path() / "missing"));
}

}  // namespace
}  // namespace vantle
