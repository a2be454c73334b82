// Feeds arbitrary bytes to the update feed's reader, as a hostile or broken server could send
// them. Every item it accepts must have a version and a web address to download from, every
// link it keeps must be http or https (the desktop's opener would open anything else, local
// files included), and the newest update among them must be one of them.
#include <cctype>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz_check.h"
#include "services/updates/appcast.h"

namespace {

using vantle::fuzz::require;

// A scheme is case-insensitive: "HTTPS://" is as much a web address as "https://".
bool isWebAddress(std::string_view link) {
    std::string scheme(link.substr(0, link.find(':')));
    for (char& c : scheme) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return (scheme == "https" || scheme == "http") && link.substr(scheme.size()).starts_with("://");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view document(reinterpret_cast<const char*>(data), size);
    const std::optional<std::vector<vantle::AppcastItem>> items = vantle::parseAppcast(document);
    if (!items) {
        return 0;
    }
    for (const vantle::AppcastItem& item : *items) {
        require(!item.version.empty(), "an accepted item has a version");
        require(isWebAddress(item.downloadLink), "a download link is a web address");
        require(!item.releaseNotesLink || isWebAddress(*item.releaseNotesLink), "release notes are a web address");
    }
    if (const std::optional<vantle::AppcastItem> newest = vantle::newestUpdate(*items, "1")) {
        bool listed = false;
        for (const vantle::AppcastItem& item : *items) {
            listed = listed || item == *newest;
        }
        require(listed, "the newest update is one of the feed's items");
    }
    return 0;
}
