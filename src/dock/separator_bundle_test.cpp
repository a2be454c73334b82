#include "dock/separator_bundle.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <regex>
#include <set>

#include "dock/dock_tiles.h"
#include "localization/localization.h"
#include "services/file_contents.h"
#include "services/property_list_codec.h"
#include "support/temporary_directory.h"

namespace vantle {
namespace {

namespace fs = std::filesystem;

PlistValue::Dictionary infoOf(const fs::path& bundle) {
    const std::optional<std::string> bytes = readFileContents(bundle / "Contents" / "Info.plist");
    EXPECT_TRUE(bytes);
    const std::optional<PlistValue> info = parsePropertyList(bytes.value_or(""));
    EXPECT_TRUE(info && info->asDictionary());
    return info && info->asDictionary() ? *info->asDictionary() : PlistValue::Dictionary{};
}

TEST(SeparatorThemeTest, AbsentStyleIsLight) {
    EXPECT_EQ(separatorTheme(std::nullopt), "Light");
}

TEST(SeparatorThemeTest, DarkStyleIsDark) {
    EXPECT_EQ(separatorTheme("Dark"), "Dark");
}

TEST(SeparatorThemeTest, AnyOtherStyleIsLight) {
    EXPECT_EQ(separatorTheme("dark"), "Light");
    EXPECT_EQ(separatorTheme("DARK"), "Light");
    EXPECT_EQ(separatorTheme("Dark "), "Light");
    EXPECT_EQ(separatorTheme("Light"), "Light");
    EXPECT_EQ(separatorTheme(""), "Light");
}

TEST(SeparatorBundleTest, RootIsInsideTheApplicationDataFolder) {
    EXPECT_EQ(separatorRoot("/home/ann/.local/share"), fs::path("/home/ann/.local/share/Vantle Control/Separators"));
    EXPECT_EQ(separatorRoot("/home/ann/x/../.local/share/"), fs::path("/home/ann/.local/share/Vantle Control/Separators"));
}

TEST(SeparatorBundleTest, IdentifierIsThePrefixAndTheUuid) {
    EXPECT_EQ(separatorBundleIdentifier("0A1B2C3D-0000-4000-8000-000000000000"),
              "com.orlend.VantleControl.separator.0A1B2C3D-0000-4000-8000-000000000000");
}

TEST(SeparatorBundleTest, UuidsAreUpperCaseVersionFourAndFresh) {
    const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::set<std::string> seen;
    for (int index = 0; index < 100; ++index) {
        const std::string uuid = makeUuid();
        EXPECT_TRUE(std::regex_match(uuid, form)) << uuid;
        seen.insert(uuid);
    }
    EXPECT_EQ(seen.size(), 100u);
}

TEST(SeparatorBundleTest, ResourcesOfTheProgramHoldTheTemplateAndBothImages) {
    const std::optional<fs::path> templatePath = separatorTemplate(mainBundle());
    ASSERT_TRUE(templatePath);
    EXPECT_TRUE(fs::is_directory(*templatePath / "Contents"));
    for (const char* theme : {"Light", "Dark"}) {
        const std::optional<fs::path> artwork = separatorArtwork(mainBundle(), theme);
        ASSERT_TRUE(artwork) << theme;
        EXPECT_TRUE(isReadablePng(readFileContents(*artwork).value_or(""))) << theme;
    }
    EXPECT_FALSE(separatorArtwork(mainBundle(), "Sepia"));
}

TEST(SeparatorBundleTest, PngCheckWantsSignatureHeaderAndSize) {
    std::string png = readFileContents(*separatorArtwork(mainBundle(), "Light")).value_or("");
    ASSERT_TRUE(isReadablePng(png));
    EXPECT_FALSE(isReadablePng(""));
    EXPECT_FALSE(isReadablePng("GIF89a this is not a png at all"));
    EXPECT_FALSE(isReadablePng(png.substr(0, 20)));
    std::string noWidth = png;
    noWidth.replace(16, 4, std::string(4, '\0'));
    EXPECT_FALSE(isReadablePng(noWidth));
}

class CreateSeparatorTest : public ::testing::Test {
protected:
    fs::path templatePath() const { return *separatorTemplate(mainBundle()); }
    fs::path root() const { return folder.path() / "Vantle Control" / "Separators"; }
    testing::TemporaryDirectory folder;
};

TEST_F(CreateSeparatorTest, CopyGetsItsOwnIdentifierAndNothingElseChanges) {
    const std::string uuid = "11111111-2222-4333-8444-555555555555";
    const auto bundle = createSeparatorBundle(templatePath(), root(), uuid);
    ASSERT_TRUE(bundle) << bundle.error().description;
    EXPECT_EQ(*bundle, root() / uuid / "S\xC3\xA9parateur.app");

    PlistValue::Dictionary expected = infoOf(templatePath());
    expected.insert_or_assign("CFBundleIdentifier", PlistValue("com.orlend.VantleControl.separator." + uuid));
    EXPECT_EQ(infoOf(*bundle), expected);
    EXPECT_EQ(readFileContents(*bundle / "Contents" / "PkgInfo"), readFileContents(templatePath() / "Contents" / "PkgInfo"));
    const fs::perms mode = fs::status(*bundle / "Contents" / "MacOS" / "Separator").permissions();
    EXPECT_NE(mode & fs::perms::owner_exec, fs::perms::none);
}

TEST_F(CreateSeparatorTest, TwoSeparatorsGetTwoFoldersOneNameAndTwoIdentifiers) {
    const auto first = createSeparatorBundle(templatePath(), root(), makeUuid());
    const auto second = createSeparatorBundle(templatePath(), root(), makeUuid());
    ASSERT_TRUE(first && second);
    EXPECT_NE(first->parent_path(), second->parent_path());
    EXPECT_EQ(first->filename(), second->filename());
    EXPECT_NE(infoOf(*first).at("CFBundleIdentifier"), infoOf(*second).at("CFBundleIdentifier"));
}

TEST_F(CreateSeparatorTest, RootThatCannotBeCreatedGivesTheSystemError) {
    testing::writeFile(folder.path() / "Vantle Control", "a file where the folder should be");
    const auto bundle = createSeparatorBundle(templatePath(), root(), makeUuid());
    ASSERT_FALSE(bundle);
    EXPECT_EQ(bundle.error().domain, "NSPOSIXErrorDomain");
}

TEST_F(CreateSeparatorTest, MissingTemplateCannotBeCopied) {
    const auto bundle = createSeparatorBundle(folder.path() / "none.app", root(), "A");
    ASSERT_FALSE(bundle);
    EXPECT_EQ(bundle.error(), posixError(ENOENT));
    EXPECT_TRUE(fs::is_directory(root() / "A"));
}

TEST_F(CreateSeparatorTest, TemplateWithoutInfoGivesTheSystemError) {
    const fs::path broken = folder.path() / "Broken.app";
    testing::writeFile(broken / "Contents" / "PkgInfo", "APPL????");
    const auto bundle = createSeparatorBundle(broken, root(), "B");
    ASSERT_FALSE(bundle);
    EXPECT_EQ(bundle.error(), posixError(ENOENT));
}

TEST_F(CreateSeparatorTest, TemplateWhoseInfoIsNoDictionaryIsABrokenInstallation) {
    const fs::path broken = folder.path() / "Broken.app";
    testing::writeFile(broken / "Contents" / "Info.plist", serializePropertyListXml(PlistValue::Array{}));
    const auto bundle = createSeparatorBundle(broken, root(), "C");
    ASSERT_FALSE(bundle);
    EXPECT_EQ(bundle.error(), propertyListReadError(L("s037")));
    testing::writeFile(broken / "Contents" / "Info.plist", "not a plist");
    EXPECT_EQ(createSeparatorBundle(broken, root(), "D").error(), propertyListReadError(L("s037")));
}

}  // namespace
}  // namespace vantle
