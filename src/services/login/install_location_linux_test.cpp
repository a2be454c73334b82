#include "services/login/install_location_linux.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

constexpr const char* kHome = "/home/ada";

TEST(InstallLocationTest, ProgramsOfThePackageManagerAndOfAddOnPackagesAreInstalled) {
    EXPECT_TRUE(installedForLogin("/usr/bin/vantle-control", kHome));
    EXPECT_TRUE(installedForLogin("/usr/local/bin/vantle-control", kHome));
    EXPECT_TRUE(installedForLogin("/opt/vantle-control/bin/vantle-control", kHome));
}

TEST(InstallLocationTest, AProgramInTheUsersOwnLocalFolderIsInstalled) {
    EXPECT_TRUE(installedForLogin("/home/ada/.local/bin/vantle-control", kHome));
    EXPECT_TRUE(installedForLogin("/home/ada/.local/bin/vantle-control", "/home/ada/"));
}

TEST(InstallLocationTest, BuildTreesAndDownloadsAreNotInstalled) {
    EXPECT_FALSE(installedForLogin("/work/main/build/release/bin/vantle-control", kHome));
    EXPECT_FALSE(installedForLogin("/home/ada/Downloads/vantle-control/bin/vantle-control", kHome));
    EXPECT_FALSE(installedForLogin("/home/bob/.local/bin/vantle-control", kHome));
    EXPECT_FALSE(installedForLogin("/tmp/vantle-control", kHome));
}

TEST(InstallLocationTest, PrefixesMatchWholeFolderNamesOnly) {
    EXPECT_FALSE(installedForLogin("/usr2/bin/vantle-control", kHome));
    EXPECT_FALSE(installedForLogin("/optional/vantle-control", kHome));
    EXPECT_FALSE(installedForLogin("/home/ada/.localized/vantle-control", kHome));
    EXPECT_FALSE(installedForLogin("/usr", kHome));
}

TEST(InstallLocationTest, APathThatClimbsOutOfAFolderIsNotInIt) {
    EXPECT_FALSE(installedForLogin("/usr/../work/build/bin/vantle-control", kHome));
    EXPECT_TRUE(installedForLogin("/work/../usr/bin/vantle-control", kHome));
    EXPECT_TRUE(installedForLogin("/usr//bin/./vantle-control", kHome));
}

TEST(InstallLocationTest, RelativeOrEmptyPathsAreNeverInstalled) {
    EXPECT_FALSE(installedForLogin("", kHome));
    EXPECT_FALSE(installedForLogin("usr/bin/vantle-control", kHome));
}

TEST(InstallLocationTest, AHomeThatIsEmptyRelativeOrTheRootAddsNoLocalFolder) {
    EXPECT_EQ(installFolders(""), (std::vector<std::string>{"/usr/", "/opt/"}));
    EXPECT_EQ(installFolders("home/ada"), (std::vector<std::string>{"/usr/", "/opt/"}));
    EXPECT_EQ(installFolders("/"), (std::vector<std::string>{"/usr/", "/opt/"}));
    EXPECT_FALSE(installedForLogin("/.local/bin/vantle-control", "/"));
}

}  // namespace
}  // namespace vantle
