#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantle {

// One release announced by an update feed: an RSS item in the common appcast format.
struct AppcastItem {
    // The build version, compared with the running program's build ("CFBundleVersion").
    std::string version;
    // The version as people know it ("1.2"), when the feed gives one.
    std::optional<std::string> shortVersion;
    // Where the new version can be downloaded: the enclosure's address, or the item's web page.
    std::string downloadLink;
    std::optional<std::string> releaseNotesLink;

    bool operator==(const AppcastItem&) const = default;
};

// The usable items of an update feed, in feed order. Empty when the text is not an RSS
// document with a channel; a feed without usable items gives an empty list.
//
// An item is usable when it has a version (its own version element, else its enclosure's
// version attribute) and a web address to download from. An item whose enclosures are all
// marked for another operating system is not for us. Links other than http and https are
// dropped: the program hands them to the desktop's opener, which would also open local files.
std::optional<std::vector<AppcastItem>> parseAppcast(std::string_view document);

// The newest item whose version is newer than runningVersion; empty when there is none.
std::optional<AppcastItem> newestUpdate(const std::vector<AppcastItem>& items, std::string_view runningVersion);

}  // namespace vantle
