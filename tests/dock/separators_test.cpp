#include <gtest/gtest.h>

#include <iterator>

#include "dock/file_url.h"
#include "dock/separator_bundle.h"
#include "dock_actions_world.h"
#include "localization/localization.h"
#include "services/file_contents.h"
#include "services/property_list_codec.h"
#include "services/settings_keys.h"

namespace vantle {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

std::string artwork(const char* theme) {
    return readFileContents(*separatorArtwork(mainBundle(), theme)).value_or("");
}

std::string identifierOf(const fs::path& bundle) {
    const auto info = parsePropertyList(readFileContents(bundle / "Contents" / "Info.plist").value_or(""));
    return info && info->asDictionary() ? *info->asDictionary()->at("CFBundleIdentifier").asString() : "";
}

class SeparatorsTest : public testing::DockActionsWorld {
protected:
    Strings recorded() { return defaults.stringArray(settings::kSeparatorPaths).value_or(Strings{}); }
    fs::path root() const { return home.path() / "Application Support" / "Vantle Control" / "Separators"; }
};

TEST_F(SeparatorsTest, NewSeparatorIsMadeSignedDrawnRecordedAndShownInTheDock) {
    actions().addSeparator();
    EXPECT_EQ(line.reports, Strings{L("s041")});
    settle();
    EXPECT_EQ(line.reports, (Strings{L("s041"), L("s042")}));

    const Strings paths = recorded();
    ASSERT_EQ(paths.size(), 1u);
    const fs::path bundle = paths[0];
    const std::string uuid = bundle.parent_path().filename().string();
    EXPECT_EQ(bundle, root() / uuid / "S\xC3\xA9parateur.app");
    EXPECT_EQ(identifierOf(bundle), "com.orlend.VantleControl.separator." + uuid);
    EXPECT_EQ(testing::readFile(bundle / "Contents" / "_CodeSignature" / "CodeResources"),
              "adhoc com.orlend.VantleControl.separator." + uuid + "\n");
    EXPECT_EQ(testing::readFile(bundle / ".icon.png"), artwork("Light"));

    ASSERT_EQ(world.apps().size(), 1u) << world.preferencesBytes();
    const TileRecord tile = world.apps()[0];
    EXPECT_EQ(tile, separatorTile(fileUrlString(bundle.string(), true), L("s040")));
    EXPECT_NE(fileUrlString(bundle.string(), true).find("Application%20Support"), std::string::npos);
    EXPECT_EQ(tilePath(tile), bundle.string());
    EXPECT_EQ(world.logOf("codesign"), Strings{"codesign --force --sign - " + bundle.string()});
}

TEST_F(SeparatorsTest, TwoSeparatorsInARowHaveTheirOwnFoldersAndIdentifiers) {
    actions().addSeparator();
    actions().addSeparator();
    settle();
    const Strings paths = recorded();
    ASSERT_EQ(paths.size(), 2u);
    EXPECT_NE(fs::path(paths[0]).parent_path(), fs::path(paths[1]).parent_path());
    EXPECT_EQ(fs::path(paths[0]).filename(), fs::path(paths[1]).filename());
    EXPECT_NE(identifierOf(paths[0]), identifierOf(paths[1]));
    EXPECT_EQ(world.apps().size(), 2u);
    EXPECT_EQ(line.reports, (Strings{L("s041"), L("s041"), L("s042"), L("s042")}));
}

TEST_F(SeparatorsTest, DarkAppearanceDrawsTheDarkDivider) {
    interfaceStyle = "Dark";
    actions().addSeparator();
    settle();
    EXPECT_EQ(testing::readFile(fs::path(recorded().at(0)) / ".icon.png"), artwork("Dark"));
}

TEST_F(SeparatorsTest, LowerCaseDarkIsTheLightDivider) {
    interfaceStyle = "dark";
    actions().addSeparator();
    settle();
    EXPECT_EQ(testing::readFile(fs::path(recorded().at(0)) / ".icon.png"), artwork("Light"));
}

TEST_F(SeparatorsTest, SigningThatFailsWithUnreadableWordsShowsTheGenericReason) {
    world.set("fail-codesign", "1");
    world.set("error-text", "invalid-utf8");
    const std::string before = world.preferencesBytes();
    actions().addSeparator();
    settle();
    EXPECT_EQ(line.reports, Strings{L("s043", L("s112"))});
    EXPECT_TRUE(recorded().empty());
    EXPECT_EQ(world.preferencesBytes(), before);
    EXPECT_EQ(world.log().size(), 1u);
}

TEST_F(SeparatorsTest, SigningThatFailsShowsTheToolsWordsAndKeepsTheFiles) {
    world.set("fail-codesign", "1");
    actions().addSeparator();
    ASSERT_EQ(line.reports.size(), 1u);
    EXPECT_NE(line.last().find("bundle format unrecognized"), std::string::npos);
    EXPECT_EQ(std::distance(fs::directory_iterator(root()), fs::directory_iterator()), 1);
}

TEST_F(SeparatorsTest, FailedAppendKeepsTheSeparatorRecorded) {
    world.set("fail-write", "1");
    actions().addSeparator();
    settle();
    EXPECT_EQ(line.reports, (Strings{L("s041"), L("s119", 1)}));
    EXPECT_EQ(recorded().size(), 1u);
    EXPECT_TRUE(world.dockRunning());
}

class SeparatorAppearanceTest : public SeparatorsTest {
protected:
    // Two separators, made and added as the user would.
    void makeTwo() {
        actions().addSeparator();
        actions().addSeparator();
        settle();
        ASSERT_EQ(world.apps().size(), 2u);
    }
    void stored(const std::string& theme, int version) {
        defaults.set(settings::kSeparatorTheme, PlistValue(theme));
        defaults.set(settings::kSeparatorArtworkVersion, PlistValue(version));
    }
};

TEST_F(SeparatorAppearanceTest, SameThemeAndCurrentArtworkChangeNothing) {
    makeTwo();
    const std::size_t calls = world.log().size();
    const int starts = world.dockStarts();
    stored("Light", 6);
    actions().themeChanged();
    scheduler.advance(std::chrono::milliseconds(400));
    settle();
    EXPECT_EQ(world.log().size(), calls);
    EXPECT_EQ(world.dockStarts(), starts);
}

TEST_F(SeparatorAppearanceTest, OlderArtworkRedrawsEverySeparatorAndRestartsTheDockOnce) {
    makeTwo();
    const int starts = world.dockStarts();
    for (const std::string& path : recorded()) {
        testing::writeFile(fs::path(path) / ".icon.png", "old artwork");
    }
    stored("Light", 5);
    actions().themeChanged();
    scheduler.advance(std::chrono::milliseconds(400));
    settle();
    for (const std::string& path : recorded()) {
        EXPECT_EQ(testing::readFile(fs::path(path) / ".icon.png"), artwork("Light"));
    }
    EXPECT_EQ(world.dockStarts(), starts + 1);
    // One restart for each of the two appends, and one for the new artwork.
    EXPECT_EQ(world.logOf("killall -KILL").size(), 3u);
    EXPECT_EQ(defaults.integer(settings::kSeparatorArtworkVersion), 6);
}

TEST_F(SeparatorAppearanceTest, DarkAppearanceRedrawsInDark) {
    makeTwo();
    stored("Light", 6);
    interfaceStyle = "Dark";
    actions().redrawSeparators();
    settle();
    for (const std::string& path : recorded()) {
        EXPECT_EQ(testing::readFile(fs::path(path) / ".icon.png"), artwork("Dark"));
    }
    EXPECT_EQ(defaults.string(settings::kSeparatorTheme), "Dark");
}

TEST_F(SeparatorAppearanceTest, SeparatorDraggedOutOfTheDockIsSkipped) {
    makeTwo();
    const Strings paths = recorded();
    // The user drags the first separator out: the Dock rewrites its list without it.
    PlistValue::Array apps = world.apps();
    apps.erase(apps.begin());
    world.writePreferences(serializePropertyListXml(PlistValue::Dictionary{{"persistent-apps", PlistValue(apps)}}));
    testing::writeFile(fs::path(paths[0]) / ".icon.png", "old");
    testing::writeFile(fs::path(paths[1]) / ".icon.png", "old");

    actions().redrawSeparators();
    settle();
    EXPECT_EQ(testing::readFile(fs::path(paths[0]) / ".icon.png"), "old");
    EXPECT_EQ(testing::readFile(fs::path(paths[1]) / ".icon.png"), artwork("Light"));
    EXPECT_EQ(defaults.string(settings::kSeparatorTheme), "Light");
    EXPECT_EQ(defaults.integer(settings::kSeparatorArtworkVersion), 6);
    // Only the two additions spoke; the redraw shows nothing.
    EXPECT_EQ(line.reports.size(), 4u);
}

TEST_F(SeparatorAppearanceTest, WithoutSeparatorsOnlyThemeAndVersionAreStored) {
    actions().redrawSeparators();
    settle();
    EXPECT_TRUE(world.log().empty());
    EXPECT_EQ(world.dockStarts(), 1);
    EXPECT_EQ(defaults.string(settings::kSeparatorTheme), "Light");
    EXPECT_EQ(defaults.integer(settings::kSeparatorArtworkVersion), 6);
}

TEST_F(SeparatorAppearanceTest, UnreadableDockRedrawsNothingButStoresTheTheme) {
    makeTwo();
    const int starts = world.dockStarts();
    world.writePreferences("not a property list");
    actions().redrawSeparators();
    settle();
    EXPECT_EQ(world.dockStarts(), starts);
    EXPECT_EQ(defaults.integer(settings::kSeparatorArtworkVersion), 6);
    EXPECT_EQ(world.preferencesBytes(), "not a property list");
}

}  // namespace
}  // namespace vantle
