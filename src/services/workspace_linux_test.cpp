#include "services/workspace_linux.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "support/temporary_directory.h"

namespace vantle {
namespace {

// The settings applications are stand-in scripts on a private PATH that note how they were run.
TEST(WorkspaceStandInToolsTest, StartsTheFirstToolThatIsInstalled) {
    testing::TemporaryDirectory bin;
    const std::filesystem::path record = bin.path() / "record.txt";
    testing::writeFile(bin.path() / "arandr", "#!/bin/sh\necho \"arandr $*\" > " + record.string() + "\n");
    std::filesystem::permissions(bin.path() / "arandr", std::filesystem::perms::owner_all);
    const std::string savedPath = std::getenv("PATH");
    ::setenv("PATH", (bin.path().string() + ":/usr/bin:/bin").c_str(), 1);
    const bool started = startFirstAvailable({{"no-such-settings-tool", "x"}, {"arandr", "--quiet"}});
    ::setenv("PATH", savedPath.c_str(), 1);
    ASSERT_TRUE(started);
    for (int attempt = 0; attempt < 200 && !std::filesystem::exists(record); ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(testing::readFile(record), "arandr --quiet\n");
}

TEST(WorkspaceStandInToolsTest, NothingInstalledIsReported) {
    EXPECT_FALSE(startFirstAvailable({{"no-such-settings-tool"}, {}}));
}

}  // namespace
}  // namespace vantle
