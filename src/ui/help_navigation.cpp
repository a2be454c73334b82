#include "ui/help_navigation.h"

#include <string_view>

namespace vantle {
namespace {

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

// A path inside the folder: no way out of it through "..", and no other folder whose name only
// begins like it ("Help2").
bool insideFolder(std::string_view path, std::string_view folder) {
    if (!startsWith(path, folder) || path.size() <= folder.size() || path[folder.size()] != '/') {
        return false;
    }
    std::string_view rest = path.substr(folder.size());
    while (!rest.empty()) {
        rest.remove_prefix(1);
        const std::size_t slash = rest.find('/');
        const std::string_view segment = rest.substr(0, slash);
        if (segment == ".." || segment == ".") {
            return false;
        }
        rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash);
    }
    return true;
}

}  // namespace

HelpLinkDecision decideHelpLink(const std::string& url, const std::string& helpFolder) {
    if (url.empty()) {
        return HelpLinkDecision::drop;
    }
    if (startsWith(url, "https:") || startsWith(url, "mailto:")) {
        return HelpLinkDecision::handOff;
    }
    if (startsWith(url, "file://")) {
        std::string_view path = std::string_view(url).substr(7);
        // A page's own anchors ("#keys") stay on the page; the query or fragment is no part of
        // the file's path.
        path = path.substr(0, path.find_first_of("?#"));
        if (!helpFolder.empty() && insideFolder(path, helpFolder)) {
            return HelpLinkDecision::show;
        }
    }
    return HelpLinkDecision::drop;
}

}  // namespace vantle
