#include "services/updates/appcast.h"

#include <gtest/gtest.h>

#include <string>

namespace vantle {
namespace {

std::string feedWith(const std::string& items) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
           "<rss version=\"2.0\" xmlns:sparkle=\"urn:appcast\" xmlns:atom=\"http://www.w3.org/2005/Atom\">\n"
           "<channel><title>Vantle Control</title>\n" +
           items + "</channel></rss>\n";
}

const std::string kTypicalItem =
    "<item><title>Version 1.2</title>\n"
    "  <sparkle:version>261201.1</sparkle:version>\n"
    "  <sparkle:shortVersionString>1.2</sparkle:shortVersionString>\n"
    "  <sparkle:releaseNotesLink>https://vantle.example/notes/1.2.html</sparkle:releaseNotesLink>\n"
    "  <pubDate>Tue, 01 Dec 2026 10:00:00 +0000</pubDate>\n"
    "  <enclosure url=\"https://vantle.example/download/vantle-control-1.2.tar.gz\" length=\"1234\" "
    "type=\"application/octet-stream\"/>\n"
    "</item>\n";

TEST(AppcastTest, ReadsVersionShortVersionAndLinksOfAnItem) {
    const auto items = parseAppcast(feedWith(kTypicalItem));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 1u);
    const AppcastItem& item = items->front();
    EXPECT_EQ(item.version, "261201.1");
    EXPECT_EQ(item.shortVersion, "1.2");
    EXPECT_EQ(item.downloadLink, "https://vantle.example/download/vantle-control-1.2.tar.gz");
    EXPECT_EQ(item.releaseNotesLink, "https://vantle.example/notes/1.2.html");
}

TEST(AppcastTest, TakesTheVersionsFromTheEnclosureWhenTheItemHasNoElementsForThem) {
    const auto items = parseAppcast(feedWith(
        "<item><enclosure url=\"https://vantle.example/a.tar.gz\" sparkle:version=\"7\" "
        "sparkle:shortVersionString=\"0.7\"/></item>"));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 1u);
    EXPECT_EQ(items->front().version, "7");
    EXPECT_EQ(items->front().shortVersion, "0.7");
}

TEST(AppcastTest, AcceptsAnyPrefixForTheFormatsNamespace) {
    const auto items = parseAppcast(
        "<rss xmlns:u=\"urn:appcast\"><channel><item><u:version>3</u:version>"
        "<enclosure url=\"https://vantle.example/3.tar.gz\"/></item></channel></rss>");
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 1u);
    EXPECT_EQ(items->front().version, "3");
}

TEST(AppcastTest, TrimsBlanksAroundValues) {
    const auto items = parseAppcast(feedWith(
        "<item><sparkle:version>\n  5 \n</sparkle:version><link> https://vantle.example/5 </link></item>"));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 1u);
    EXPECT_EQ(items->front().version, "5");
    EXPECT_EQ(items->front().downloadLink, "https://vantle.example/5");
}

TEST(AppcastTest, AnItemWithoutEnclosureOffersItsWebPage) {
    const auto items = parseAppcast(feedWith(
        "<item><sparkle:version>9</sparkle:version><atom:link href=\"https://elsewhere.example/\"/>"
        "<link>https://vantle.example/releases/9</link></item>"));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 1u);
    EXPECT_EQ(items->front().downloadLink, "https://vantle.example/releases/9");
}

TEST(AppcastTest, SkipsItemsWithoutVersionOrDownloadLink) {
    const auto items = parseAppcast(feedWith(
        "<item><enclosure url=\"https://vantle.example/a.tar.gz\"/></item>"
        "<item><sparkle:version>  </sparkle:version><link>https://vantle.example/</link></item>"
        "<item><sparkle:version>2</sparkle:version></item>" +
        kTypicalItem));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 1u);
    EXPECT_EQ(items->front().version, "261201.1");
}

TEST(AppcastTest, SkipsItemsMeantForOtherSystemsAndPicksOurEnclosure) {
    const auto items = parseAppcast(feedWith(
        "<item><sparkle:version>20</sparkle:version>"
        "<enclosure sparkle:os=\"macos\" url=\"https://vantle.example/mac.zip\"/></item>"
        "<item><sparkle:version>21</sparkle:version>"
        "<enclosure sparkle:os=\"windows\" url=\"https://vantle.example/win.zip\"/>"
        "<enclosure sparkle:os=\"Linux\" url=\"https://vantle.example/linux.tar.gz\"/></item>"));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 1u);
    EXPECT_EQ(items->front().version, "21");
    EXPECT_EQ(items->front().downloadLink, "https://vantle.example/linux.tar.gz");
}

TEST(AppcastTest, DropsLinksThatAreNotWebAddresses) {
    const auto items = parseAppcast(feedWith(
        "<item><sparkle:version>30</sparkle:version>"
        "<sparkle:releaseNotesLink>file:///etc/passwd</sparkle:releaseNotesLink>"
        "<enclosure url=\"file:///tmp/x\"/><link>javascript:alert(1)</link></item>"
        "<item><sparkle:version>31</sparkle:version>"
        "<sparkle:releaseNotesLink>ftp://vantle.example/notes</sparkle:releaseNotesLink>"
        "<enclosure url=\"HTTP://vantle.example/31.tar.gz\"/></item>"));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 1u);
    EXPECT_EQ(items->front().version, "31");
    EXPECT_EQ(items->front().downloadLink, "HTTP://vantle.example/31.tar.gz");
    EXPECT_FALSE(items->front().releaseNotesLink);
}

TEST(AppcastTest, AFeedWithoutItemsIsAnEmptyList) {
    const auto items = parseAppcast(feedWith(""));
    ASSERT_TRUE(items);
    EXPECT_TRUE(items->empty());
}

TEST(AppcastTest, DocumentsThatAreNoFeedAreRefused) {
    EXPECT_FALSE(parseAppcast(""));
    EXPECT_FALSE(parseAppcast("<html><body>Not found</body></html>"));
    EXPECT_FALSE(parseAppcast("<rss version=\"2.0\"></rss>"));
    EXPECT_FALSE(parseAppcast("<feed xmlns=\"http://www.w3.org/2005/Atom\"><entry/></feed>"));
    EXPECT_FALSE(parseAppcast(feedWith(kTypicalItem).substr(0, 200)));
}

AppcastItem itemWithVersion(const std::string& version) {
    AppcastItem item;
    item.version = version;
    item.downloadLink = "https://vantle.example/" + version;
    return item;
}

TEST(AppcastTest, NewestUpdateIsTheHighestVersionAboveTheRunningOne) {
    const std::vector<AppcastItem> items = {itemWithVersion("1.9"), itemWithVersion("1.10"),
                                            itemWithVersion("1.2")};
    const std::optional<AppcastItem> update = newestUpdate(items, "1.9");
    ASSERT_TRUE(update);
    EXPECT_EQ(update->version, "1.10");
}

TEST(AppcastTest, NoUpdateWhenNothingIsNewerThanTheRunningVersion) {
    EXPECT_FALSE(newestUpdate({itemWithVersion("1.10"), itemWithVersion("1.9")}, "1.10"));
    EXPECT_FALSE(newestUpdate({itemWithVersion("1.0")}, "1.0.0"));
    EXPECT_FALSE(newestUpdate({}, "1.0"));
}

}  // namespace
}  // namespace vantle
