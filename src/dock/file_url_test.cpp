#include "dock/file_url.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

TEST(FileUrlTest, FolderUrlEncodesSpacesAndAccentsAndEndsInASlash) {
    EXPECT_EQ(fileUrlString("/Users/ann/Application Support/S\xC3\xA9parateur.app", true),
              "file:///Users/ann/Application%20Support/S%C3%A9parateur.app/");
}

TEST(FileUrlTest, FileUrlKeepsTheCharactersAPathMayHold) {
    EXPECT_EQ(fileUrlString("/a/b-c_d.e~f!$&'()*+,;=:@", false), "file:///a/b-c_d.e~f!$&'()*+,;=:@");
    EXPECT_EQ(fileUrlString("/a/#?%", false), "file:///a/%23%3F%25");
}

TEST(FileUrlTest, PathOfAFolderUrlReadsBackWithoutTheSlash) {
    const std::string path = "/Users/ann/Library/Application Support/Vantle Control/S\xC3\xA9parateur.app";
    EXPECT_EQ(urlPath(fileUrlString(path, true)), path);
}

TEST(FileUrlTest, DotSegmentsOfAFileUrlAreResolved) {
    EXPECT_EQ(urlPath("file:///a/./b/../c/"), "/a/c");
    EXPECT_EQ(urlPath("file:///a//b/"), "/a/b");
    EXPECT_EQ(urlPath("file:///../a"), "/a");
    EXPECT_EQ(urlPath("file:///"), "/");
}

TEST(FileUrlTest, FileSchemeIsRecognisedInAnyCase) {
    EXPECT_EQ(urlPath("FILE:///a/../b"), "/b");
}

TEST(FileUrlTest, HostOfAFileUrlIsNotPartOfThePath) {
    EXPECT_EQ(urlPath("file://localhost/Applications/Mail.app/"), "/Applications/Mail.app");
}

TEST(FileUrlTest, QueryAndFragmentAreNotPartOfThePath) {
    EXPECT_EQ(urlPath("file:///a/b?x=1#top"), "/a/b");
}

TEST(FileUrlTest, OtherUrlsKeepTheirDotSegmentsButLoseTheTrailingSlash) {
    EXPECT_EQ(urlPath("https://example.com/a/../b/"), "/a/../b");
    EXPECT_EQ(urlPath("https://example.com"), "");
}

TEST(FileUrlTest, TextWithoutASchemeIsARelativeUrl) {
    EXPECT_EQ(urlPath("/Applications/Safari.app/"), "/Applications/Safari.app");
    EXPECT_EQ(urlPath("a/./b"), "a/./b");
}

TEST(FileUrlTest, TextThatIsNoUrlHasNoPath) {
    EXPECT_EQ(urlPath(""), std::nullopt);
    EXPECT_EQ(urlPath("/Applications/Some App.app"), std::nullopt);
    EXPECT_EQ(urlPath("file:///S\xC3\xA9parateur.app"), std::nullopt);
    EXPECT_EQ(urlPath("file:///100%"), std::nullopt);
    EXPECT_EQ(urlPath("file:///a%2"), std::nullopt);
    EXPECT_EQ(urlPath("file:///a%zz"), std::nullopt);
    EXPECT_EQ(urlPath("file:///a#b#c"), std::nullopt);
    EXPECT_EQ(urlPath("file:///a<b>"), std::nullopt);
}

TEST(FileUrlTest, BracketsBelongToTheHostOnly) {
    EXPECT_EQ(urlPath("http://[::1]/a"), "/a");
    EXPECT_EQ(urlPath("file:///a[1]"), std::nullopt);
}

TEST(FileUrlTest, PercentEscapesAreDecoded) {
    EXPECT_EQ(urlPath("file:///a%20b/%C3%A9"), "/a b/\xC3\xA9");
}

TEST(FileUrlTest, EscapesThatAreNotUtf8GiveAnEmptyPath) {
    EXPECT_EQ(urlPath("file:///a%FF"), "");
}

}  // namespace
}  // namespace vantle
