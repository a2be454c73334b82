// The one automatic registration on the first launch, with the program run as a child process
// from its build tree and from a copy of it installed under a private home's ~/.local/bin.

#include <gtest/gtest.h>

#include <filesystem>

#include "support/child_process.h"
#include "support/temporary_directory.h"

namespace vantle {
namespace {

namespace fs = std::filesystem;

class LoginFirstLaunchTest : public ::testing::Test {
protected:
    LoginFirstLaunchTest() {
        fs::create_directories(installed().parent_path());
        fs::copy_file(LOGIN_FIRST_LAUNCH, installed());
    }

    fs::path home() const { return directory.path() / "home"; }
    fs::path installed() const { return home() / ".local" / "bin" / "vantle-control"; }
    fs::path entry() const { return home() / ".config" / "autostart" / "vantle-control.desktop"; }

    std::string launch(const fs::path& program) {
        testing::ChildOptions options;
        options.environment["HOME"] = home().string();
        options.environment["XDG_CONFIG_HOME"] = std::nullopt;
        options.environment["XDG_CONFIG_DIRS"] = (directory.path() / "xdg").string();
        const testing::ChildResult result = testing::runChild(program.string(), {}, options);
        EXPECT_EQ(result.exitStatus, 0) << result.standardError;
        return result.standardOutput;
    }

    testing::TemporaryDirectory directory;
};

TEST_F(LoginFirstLaunchTest, ALaunchFromTheBuildTreeRegistersNothingAndLeavesTheSetupOpen) {
    EXPECT_EQ(launch(LOGIN_FIRST_LAUNCH), "installed=0 status=0 setupDone=0 error=\n");
    EXPECT_FALSE(fs::exists(entry()));
}

TEST_F(LoginFirstLaunchTest, TheFirstLaunchFromAnInstalledPlaceRegistersThatProgram) {
    EXPECT_EQ(launch(LOGIN_FIRST_LAUNCH), "installed=0 status=0 setupDone=0 error=\n");
    EXPECT_EQ(launch(installed()), "installed=1 status=1 setupDone=1 error=\n");
    ASSERT_TRUE(fs::exists(entry()));
    EXPECT_NE(testing::readFile(entry()).find("\nExec=" + installed().string() + "\n"), std::string::npos);
}

TEST_F(LoginFirstLaunchTest, ALaterLaunchNeverRegistersAgainAfterTheUserSwitchedItOff) {
    launch(installed());
    ASSERT_TRUE(fs::exists(entry()));
    fs::remove(entry());
    EXPECT_EQ(launch(installed()), "installed=1 status=0 setupDone=1 error=\n");
    EXPECT_FALSE(fs::exists(entry()));
}

TEST_F(LoginFirstLaunchTest, AFailedFirstRegistrationIsShownAndNotRetried) {
    fs::create_directories(home() / ".config");
    testing::writeFile(home() / ".config" / "autostart", "a file where the folder belongs");
    const std::string first = launch(installed());
    EXPECT_EQ(first.rfind("installed=1 status=0 setupDone=1 error=", 0), 0u) << first;
    EXPECT_GT(first.size(), std::string("installed=1 status=0 setupDone=1 error=\n").size());
    fs::remove(home() / ".config" / "autostart");
    EXPECT_EQ(launch(installed()), "installed=1 status=0 setupDone=1 error=\n");
    EXPECT_FALSE(fs::exists(entry()));
}

}  // namespace
}  // namespace vantle
