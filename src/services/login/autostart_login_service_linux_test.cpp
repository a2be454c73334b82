#include "services/login/autostart_login_service_linux.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <optional>
#include <thread>

#include "services/login/desktop_entry_linux.h"
#include "support/temporary_directory.h"

namespace vantle {
namespace {

namespace fs = std::filesystem;

// Sets an environment variable for the life of the object, then puts the old value back.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const std::optional<std::string>& value) : name_(name) {
        if (const char* old = std::getenv(name)) {
            saved_ = old;
        }
        if (value) {
            ::setenv(name, value->c_str(), 1);
        } else {
            ::unsetenv(name);
        }
    }
    ~ScopedVariable() {
        if (saved_) {
            ::setenv(name_, saved_->c_str(), 1);
        } else {
            ::unsetenv(name_);
        }
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    const char* name_;
    std::optional<std::string> saved_;
};

// Every test works in a private configuration home and a private system folder, set through the
// environment as the desktop session sets them.
class AutostartLoginServiceTest : public ::testing::Test {
protected:
    fs::path configHome() const { return directory.path() / "config"; }
    fs::path systemFolder() const { return directory.path() / "xdg"; }
    fs::path userEntry() const { return configHome() / "autostart" / "vantle-control.desktop"; }
    fs::path systemEntry() const { return systemFolder() / "autostart" / "vantle-control.desktop"; }

    AutostartLoginService service(const std::string& executable = "/usr/bin/vantle-control") {
        return AutostartLoginService(autostartFoldersFromEnvironment(), executable);
    }

    std::vector<fs::path> filesIn(const fs::path& folder) const {
        std::vector<fs::path> files;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            files.push_back(entry.path().filename());
        }
        return files;
    }

    testing::TemporaryDirectory directory;
    ScopedVariable home{"XDG_CONFIG_HOME", configHome().string()};
    ScopedVariable dirs{"XDG_CONFIG_DIRS", systemFolder().string()};
};

TEST_F(AutostartLoginServiceTest, FoldersComeFromTheEnvironment) {
    const AutostartFolders folders = autostartFoldersFromEnvironment();
    EXPECT_EQ(folders.user, configHome() / "autostart");
    EXPECT_EQ(folders.system, std::vector<fs::path>{systemFolder() / "autostart"});
    EXPECT_EQ(service().entryPath(), userEntry());
}

TEST_F(AutostartLoginServiceTest, WithoutVariablesTheStandardFoldersAreUsed) {
    ScopedVariable noHome("XDG_CONFIG_HOME", std::nullopt);
    ScopedVariable noDirs("XDG_CONFIG_DIRS", "relative:");
    ScopedVariable user("HOME", "/home/ada");
    const AutostartFolders folders = autostartFoldersFromEnvironment();
    EXPECT_EQ(folders.user, fs::path("/home/ada/.config/autostart"));
    EXPECT_TRUE(folders.system.empty());
    ScopedVariable unsetDirs("XDG_CONFIG_DIRS", std::nullopt);
    EXPECT_EQ(autostartFoldersFromEnvironment().system, std::vector<fs::path>{"/etc/xdg/autostart"});
}

TEST_F(AutostartLoginServiceTest, WithoutAnEntryTheProgramIsNotRegistered) {
    EXPECT_EQ(service().status(), LoginItemStatus::notRegistered);
}

TEST_F(AutostartLoginServiceTest, RegisteringCreatesTheEntryThatStartsTheProgram) {
    AutostartLoginService login = service("/home/ada/.local/bin/vantle control");
    EXPECT_FALSE(login.registerApp());
    ASSERT_TRUE(fs::exists(userEntry()));
    EXPECT_EQ(testing::readFile(userEntry()), autostartEntryText("/home/ada/.local/bin/vantle control"));
    EXPECT_NE(testing::readFile(userEntry()).find("Exec=\"/home/ada/.local/bin/vantle control\"\n"),
              std::string::npos);
    EXPECT_EQ(fs::status(userEntry()).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::others_read);
    EXPECT_EQ(login.status(), LoginItemStatus::enabled);
}

TEST_F(AutostartLoginServiceTest, RegisteringLeavesNoTemporaryFileBehind) {
    service().registerApp();
    service().registerApp();
    EXPECT_EQ(filesIn(configHome() / "autostart"), std::vector<fs::path>{"vantle-control.desktop"});
}

TEST_F(AutostartLoginServiceTest, UnregisteringRemovesTheEntry) {
    AutostartLoginService login = service();
    login.registerApp();
    EXPECT_FALSE(login.unregisterApp());
    EXPECT_FALSE(fs::exists(userEntry()));
    EXPECT_EQ(login.status(), LoginItemStatus::notRegistered);
}

TEST_F(AutostartLoginServiceTest, UnregisteringWithoutAnEntryIsNoFailure) {
    EXPECT_FALSE(service().unregisterApp());
}

TEST_F(AutostartLoginServiceTest, AHiddenEntryIsNotRegistered) {
    testing::writeFile(userEntry(), "[Desktop Entry]\nType=Application\nExec=/usr/bin/vantle-control\nHidden=true\n");
    EXPECT_EQ(service().status(), LoginItemStatus::notRegistered);
}

TEST_F(AutostartLoginServiceTest, RegisteringReplacesAHiddenEntry) {
    testing::writeFile(userEntry(), hiddenAutostartEntryText("/usr/bin/vantle-control"));
    EXPECT_FALSE(service().registerApp());
    EXPECT_EQ(service().status(), LoginItemStatus::enabled);
}

TEST_F(AutostartLoginServiceTest, ASystemEntryCountsWhenTheUserHasNone) {
    testing::writeFile(systemEntry(), autostartEntryText("/usr/bin/vantle-control"));
    EXPECT_EQ(service().status(), LoginItemStatus::enabled);
}

TEST_F(AutostartLoginServiceTest, UnregisteringOverASystemEntryHidesItWithAnEntryOfTheUsers) {
    testing::writeFile(systemEntry(), autostartEntryText("/usr/bin/vantle-control"));
    AutostartLoginService login = service();
    EXPECT_FALSE(login.unregisterApp());
    ASSERT_TRUE(fs::exists(userEntry()));
    EXPECT_EQ(login.status(), LoginItemStatus::notRegistered);
    EXPECT_TRUE(fs::exists(systemEntry()));
    EXPECT_FALSE(login.registerApp());
    EXPECT_EQ(login.status(), LoginItemStatus::enabled);
}

TEST_F(AutostartLoginServiceTest, TheUsersEntryDecidesOverTheSystems) {
    testing::writeFile(systemEntry(), autostartEntryText("/usr/bin/vantle-control"));
    fs::create_directories(userEntry());  // a folder where the entry should be: unreadable as an entry
    EXPECT_EQ(service().status(), LoginItemStatus::notRegistered);
}

TEST_F(AutostartLoginServiceTest, AFailedRegistrationCarriesTheSystemsReason) {
    // A file where the autostart folder should be.
    testing::writeFile(configHome() / "autostart", "not a folder");
    const std::optional<LoginFailure> failure = service().registerApp();
    ASSERT_TRUE(failure);
    EXPECT_FALSE(failure->description.empty());
    EXPECT_EQ(service().status(), LoginItemStatus::notRegistered);
}

TEST_F(AutostartLoginServiceTest, AFailedUnregistrationCarriesTheSystemsReason) {
    fs::create_directories(userEntry() / "inside");  // a non-empty folder cannot be removed as a file
    const std::optional<LoginFailure> failure = service().unregisterApp();
    ASSERT_TRUE(failure);
    EXPECT_FALSE(failure->description.empty());
}

// Without a desktop of its own the autostart folder is opened, here by a stand-in opener on a
// private PATH that notes what it was asked to open.
TEST_F(AutostartLoginServiceTest, OpeningTheSettingsWithoutADesktopOpensTheAutostartFolder) {
    testing::TemporaryDirectory bin;
    const fs::path record = bin.path() / "record.txt";
    testing::writeFile(bin.path() / "xdg-open",
                       "#!/bin/sh\necho \"$*\" > " + record.string() + ".part && mv " + record.string() +
                           ".part " + record.string() + "\n");
    fs::permissions(bin.path() / "xdg-open", fs::perms::owner_all);
    ScopedVariable path("PATH", bin.path().string() + ":/usr/bin:/bin");
    ScopedVariable desktop("XDG_CURRENT_DESKTOP", std::nullopt);

    EXPECT_TRUE(service().openSettings());
    for (int attempt = 0; attempt < 500 && !fs::exists(record); ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(testing::readFile(record), (configHome() / "autostart").string() + "\n");
    EXPECT_TRUE(fs::is_directory(configHome() / "autostart"));
}

}  // namespace
}  // namespace vantle
