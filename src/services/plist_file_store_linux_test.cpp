#include "services/plist_file_store_linux.h"

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <thread>

#include "services/property_list_codec.h"
#include "services/settings_location_linux.h"
#include "services/user_defaults.h"
#include "support/child_process.h"
#include "support/temporary_directory.h"

namespace vantle {
namespace {

using testing::readFile;
using testing::writeFile;

class PlistFileStoreTest : public ::testing::Test {
protected:
    std::vector<std::filesystem::path> brokenCopies() const {
        std::vector<std::filesystem::path> copies;
        for (const auto& entry : std::filesystem::directory_iterator(file.parent_path())) {
            if (entry.path().filename().string().starts_with("defaults.plist-broken-")) {
                copies.push_back(entry.path());
            }
        }
        return copies;
    }

    testing::TemporaryDirectory directory;
    std::filesystem::path file = directory.path() / "vantle-control" / "defaults.plist";
};

TEST_F(PlistFileStoreTest, MissingFileReadsEmptyAndFirstWriteCreatesIt) {
    PlistFileStore store(file);
    EXPECT_FALSE(store.object("linked").has_value());
    EXPECT_TRUE(store.setObject("linked", false));
    std::optional<PlistValue> onDisk = parsePropertyList(readFile(file));
    ASSERT_TRUE(onDisk.has_value());
    EXPECT_EQ(*onDisk, PlistValue(PlistValue::Dictionary{{"linked", false}}));
}

TEST_F(PlistFileStoreTest, ChangeByAnotherProgramIsSeenAtTheNextRead) {
    PlistFileStore store(file);
    store.setObject("softwareBrightness", false);
    EXPECT_EQ(store.object("softwareBrightness"), PlistValue(false));
    writeFile(file, serializePropertyListXml(PlistValue(PlistValue::Dictionary{{"softwareBrightness", true}})));
    EXPECT_EQ(store.object("softwareBrightness"), PlistValue(true));
}

TEST_F(PlistFileStoreTest, KeysOfOtherProgramsSurviveOurWrites) {
    writeFile(file, serializePropertyListXml(PlistValue(
                        PlistValue::Dictionary{{"foreign", PlistValue::Data{1, 2, 3}}, {"when", PlistValue::Date{5.0}}})));
    PlistFileStore store(file);
    store.setObject("linked", true);
    std::optional<PlistValue> onDisk = parsePropertyList(readFile(file));
    ASSERT_TRUE(onDisk.has_value());
    EXPECT_EQ(onDisk->asDictionary()->at("foreign"), PlistValue(PlistValue::Data{1, 2, 3}));
    EXPECT_EQ(onDisk->asDictionary()->at("when"), PlistValue(PlistValue::Date{5.0}));
}

TEST_F(PlistFileStoreTest, WriteOfWhatTheFileHoldsLeavesTheFileAlone) {
    PlistFileStore store(file);
    ASSERT_TRUE(store.setObject("linked", true));
    const auto identity = [this] {
        struct stat status {};
        ::stat(file.c_str(), &status);
        return std::make_pair(status.st_ino, status.st_mtim.tv_nsec + status.st_mtim.tv_sec * 1000000000L);
    };
    const auto before = identity();
    EXPECT_TRUE(store.setObject("linked", true));
    EXPECT_TRUE(store.setObject("absent", std::nullopt));
    EXPECT_EQ(identity(), before);
    EXPECT_TRUE(store.setObject("linked", false));
    EXPECT_NE(identity(), before);
    EXPECT_EQ(parsePropertyList(readFile(file)), PlistValue(PlistValue::Dictionary{{"linked", false}}));
}

TEST_F(PlistFileStoreTest, RemovingAKeyRewritesTheFileWithoutIt) {
    PlistFileStore store(file);
    store.setObject("a", 1);
    store.setObject("b", 2);
    store.setObject("a", std::nullopt);
    EXPECT_EQ(*parsePropertyList(readFile(file)), PlistValue(PlistValue::Dictionary{{"b", 2}}));
}

struct BrokenContent {
    const char* name;
    std::string bytes;
};

class BrokenSettingsFileTest : public PlistFileStoreTest, public ::testing::WithParamInterface<BrokenContent> {};

TEST_P(BrokenSettingsFileTest, IsKeptAsideAndReadsEmpty) {
    writeFile(file, GetParam().bytes);
    PlistFileStore store(file);
    EXPECT_FALSE(store.object("linked").has_value());
    const std::vector<std::filesystem::path> copies = brokenCopies();
    ASSERT_EQ(copies.size(), 1u);
    EXPECT_EQ(readFile(copies[0]), GetParam().bytes);
    // A new file starts cleanly and the kept copy is left alone.
    EXPECT_TRUE(store.setObject("linked", false));
    EXPECT_EQ(store.object("linked"), PlistValue(false));
    EXPECT_EQ(readFile(copies[0]), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(
    Contents, BrokenSettingsFileTest,
    ::testing::Values(BrokenContent{"Garbage", "\x01\x02 not a property list at all"},
                      BrokenContent{"Empty", ""},
                      BrokenContent{"Truncated", "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>linked</key>"},
                      BrokenContent{"TopLevelArray", serializePropertyListXml(PlistValue(PlistValue::Array{1, 2}))}),
    [](const ::testing::TestParamInfo<BrokenContent>& parameter) { return parameter.param.name; });

TEST_F(PlistFileStoreTest, FolderInPlaceOfTheFileIsMovedAsideUntouched) {
    std::filesystem::create_directories(file);
    writeFile(file / "inside.txt", "keep me");
    PlistFileStore store(file);
    EXPECT_FALSE(store.object("linked").has_value());
    const std::vector<std::filesystem::path> copies = brokenCopies();
    ASSERT_EQ(copies.size(), 1u);
    EXPECT_EQ(readFile(copies[0] / "inside.txt"), "keep me");
    EXPECT_TRUE(store.setObject("linked", true));
    EXPECT_TRUE(std::filesystem::is_regular_file(file));
}

TEST_F(PlistFileStoreTest, ValueWhoseSaveFailedStillReadsBackInThisProcess) {
    // A file where the folder should be makes every save fail.
    writeFile(directory.path() / "blocker", "");
    PlistFileStore store(directory.path() / "blocker" / "defaults.plist");
    EXPECT_FALSE(store.setObject("linked", false));
    EXPECT_EQ(store.object("linked"), PlistValue(false));
}

// A writer killed at a random moment must leave the old or the new file, never a mixture.
TEST_F(PlistFileStoreTest, WriterKilledHalfWayLeavesAWholeFile) {
    std::mt19937 random(12345);
    std::uniform_int_distribution<int> delay(2, 40);
    for (int attempt = 0; attempt < 15; ++attempt) {
        {
            testing::RunningChild writer(SETTINGS_WRITER_CHILD, {file.string()});
            std::this_thread::sleep_for(std::chrono::milliseconds(delay(random)));
            writer.killAndWait(SIGKILL);
        }
        if (!std::filesystem::exists(file)) {
            continue;  // killed before its first write finished
        }
        std::optional<PlistValue> onDisk = parsePropertyList(readFile(file));
        ASSERT_TRUE(onDisk.has_value()) << "attempt " << attempt;
        const PlistValue::Dictionary* dictionary = onDisk->asDictionary();
        ASSERT_NE(dictionary, nullptr);
        const std::string* payload = dictionary->at("payload").asString();
        ASSERT_NE(payload, nullptr);
        ASSERT_EQ(payload->size(), 512u * 1024u);
        EXPECT_EQ(payload->find_first_not_of(payload->front()), std::string::npos);
    }
    EXPECT_TRUE(brokenCopies().empty());
}

TEST(SettingsLocationTest, FollowsXdgConfigHomeElseHomeConfig) {
    const char* savedConfig = std::getenv("XDG_CONFIG_HOME");
    const std::string savedConfigValue = savedConfig ? savedConfig : "";
    const std::string home = std::getenv("HOME") ? std::getenv("HOME") : "/";

    ::setenv("XDG_CONFIG_HOME", "/tmp/elsewhere", 1);
    EXPECT_EQ(settingsFilePath(), std::filesystem::path("/tmp/elsewhere/vantle-control/defaults.plist"));
    ::unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(settingsFilePath(), std::filesystem::path(home) / ".config/vantle-control/defaults.plist");
    ::setenv("XDG_CONFIG_HOME", "relative/path", 1);
    EXPECT_EQ(settingsFilePath(), std::filesystem::path(home) / ".config/vantle-control/defaults.plist");

    if (savedConfig) {
        ::setenv("XDG_CONFIG_HOME", savedConfigValue.c_str(), 1);
    } else {
        ::unsetenv("XDG_CONFIG_HOME");
    }
}

}  // namespace
}  // namespace vantle
