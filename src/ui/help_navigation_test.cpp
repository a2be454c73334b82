#include "ui/help_navigation.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

const std::string kFolder = "/usr/share/vantle-control/Help";

TEST(HelpNavigationTest, PagesOfTheHelpFolderAreShownInTheWindow) {
    EXPECT_EQ(decideHelpLink("file:///usr/share/vantle-control/Help/fr.html", kFolder), HelpLinkDecision::show);
    EXPECT_EQ(decideHelpLink("file:///usr/share/vantle-control/Help/en.html#keys", kFolder), HelpLinkDecision::show);
}

TEST(HelpNavigationTest, FilesOutsideTheHelpFolderAreDropped) {
    EXPECT_EQ(decideHelpLink("file:///etc/passwd", kFolder), HelpLinkDecision::drop);
    EXPECT_EQ(decideHelpLink("file:///usr/share/vantle-control/Help/../LICENSE.txt", kFolder), HelpLinkDecision::drop);
    EXPECT_EQ(decideHelpLink("file:///usr/share/vantle-control/Help2/en.html", kFolder), HelpLinkDecision::drop);
    EXPECT_EQ(decideHelpLink("file:///usr/share/vantle-control/Help", kFolder), HelpLinkDecision::drop);
}

TEST(HelpNavigationTest, HttpsAndMailGoToTheDesktop) {
    EXPECT_EQ(decideHelpLink("https://orlend.example/vantle-control", kFolder), HelpLinkDecision::handOff);
    EXPECT_EQ(decideHelpLink("mailto:support@orlend.example", kFolder), HelpLinkDecision::handOff);
}

TEST(HelpNavigationTest, PlainHttpAndOtherSchemesAreDropped) {
    EXPECT_EQ(decideHelpLink("http://orlend.example/", kFolder), HelpLinkDecision::drop);
    EXPECT_EQ(decideHelpLink("HTTPS://orlend.example/", kFolder), HelpLinkDecision::drop);
    EXPECT_EQ(decideHelpLink("javascript:alert(1)", kFolder), HelpLinkDecision::drop);
    EXPECT_EQ(decideHelpLink("ftp://orlend.example/", kFolder), HelpLinkDecision::drop);
    EXPECT_EQ(decideHelpLink("data:text/html,hello", kFolder), HelpLinkDecision::drop);
    EXPECT_EQ(decideHelpLink("", kFolder), HelpLinkDecision::drop);
}

}  // namespace
}  // namespace vantle
