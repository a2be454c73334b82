#include "services/login/applications_folder.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

TEST(ApplicationsFolderTest, BundleInTheSystemApplicationsFolderMayStartAtLogin) {
    EXPECT_TRUE(inApplicationsFolder("/Applications/Vantle Control.app", "/Users/ana"));
}

TEST(ApplicationsFolderTest, BundleInASubfolderOfApplicationsCountsToo) {
    EXPECT_TRUE(inApplicationsFolder("/Applications/Utilities/Vantle Control.app", "/Users/ana"));
}

TEST(ApplicationsFolderTest, BundleInTheUsersOwnApplicationsFolderCounts) {
    EXPECT_TRUE(inApplicationsFolder("/Users/ana/Applications/Vantle Control.app", "/Users/ana"));
    EXPECT_TRUE(inApplicationsFolder("/Users/ana/Applications/Vantle Control.app", "/Users/ana/"));
}

TEST(ApplicationsFolderTest, BundleInADownloadFolderMayNot) {
    EXPECT_FALSE(inApplicationsFolder("/Users/ana/Downloads/Vantle Control.app", "/Users/ana"));
}

TEST(ApplicationsFolderTest, AnotherUsersApplicationsFolderDoesNotCount) {
    EXPECT_FALSE(inApplicationsFolder("/Users/bo/Applications/Vantle Control.app", "/Users/ana"));
}

TEST(ApplicationsFolderTest, FolderWhoseNameOnlyBeginsLikeApplicationsDoesNotCount) {
    EXPECT_FALSE(inApplicationsFolder("/ApplicationsOld/Vantle Control.app", "/Users/ana"));
    EXPECT_FALSE(inApplicationsFolder("/Applications", "/Users/ana"));
}

TEST(ApplicationsFolderTest, HomeThatIsEmptyOrRelativeHasNoApplicationsFolder) {
    EXPECT_FALSE(inApplicationsFolder("Applications/Vantle Control.app", ""));
    EXPECT_FALSE(inApplicationsFolder("ana/Applications/Vantle Control.app", "ana"));
    EXPECT_TRUE(inApplicationsFolder("/Applications/Vantle Control.app", ""));
}

TEST(ApplicationsFolderTest, RootAsHomeNamesTheSystemFolderOnly) {
    EXPECT_TRUE(inApplicationsFolder("/Applications/Vantle Control.app", "/"));
    EXPECT_FALSE(inApplicationsFolder("//Applications/Vantle Control.app", "/"));
}

}  // namespace
}  // namespace vantle
