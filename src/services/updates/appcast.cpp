#include "services/updates/appcast.h"

#include <algorithm>
#include <cctype>

#include "services/updates/version_compare.h"
#include "services/updates/xml_reader.h"

namespace vantle {
namespace {

// The operating system this build runs on, as feeds name it in an enclosure's "os" attribute.
constexpr std::string_view kOperatingSystem = "linux";

std::string trimmed(std::string_view text) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return std::string(text);
}

bool equalsIgnoringCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    });
}

bool isWebLink(std::string_view link) {
    const auto hasScheme = [&](std::string_view scheme) {
        return link.size() > scheme.size() && equalsIgnoringCase(link.substr(0, scheme.size()), scheme);
    };
    return hasScheme("https://") || hasScheme("http://");
}

std::optional<std::string> webLink(std::optional<std::string> link) {
    if (!link) {
        return std::nullopt;
    }
    std::string clean = trimmed(*link);
    if (!isWebLink(clean)) {
        return std::nullopt;
    }
    return clean;
}

// The feed format's own elements and attributes carry a namespace prefix, conventionally
// "sparkle"; feeds are free to choose another, so any prefix with the right local name counts.
const XmlElement* formatChild(const XmlElement& element, std::string_view local) {
    for (const XmlElement& child : element.children) {
        if (hasPrefix(child.name) && localName(child.name) == local) {
            return &child;
        }
    }
    return nullptr;
}

std::optional<std::string> formatAttribute(const XmlElement& element, std::string_view local) {
    for (const auto& [name, value] : element.attributes) {
        if (hasPrefix(name) && !name.starts_with("xmlns:") && localName(name) == local) {
            return value;
        }
    }
    return std::nullopt;
}

std::optional<std::string> nonEmpty(std::optional<std::string> text) {
    if (!text) {
        return std::nullopt;
    }
    std::string clean = trimmed(*text);
    return clean.empty() ? std::nullopt : std::optional<std::string>(std::move(clean));
}

// The first enclosure meant for this system: one without an "os" mark, or marked for us.
// Empty with found = true when the item has enclosures, but all for other systems.
const XmlElement* ourEnclosure(const XmlElement& item, bool& found) {
    found = false;
    for (const XmlElement& child : item.children) {
        if (child.name != "enclosure") {
            continue;
        }
        found = true;
        const std::optional<std::string> system = formatAttribute(child, "os");
        if (!system || equalsIgnoringCase(trimmed(*system), kOperatingSystem)) {
            return &child;
        }
    }
    return nullptr;
}

std::optional<AppcastItem> itemOf(const XmlElement& item) {
    bool hasEnclosures = false;
    const XmlElement* enclosure = ourEnclosure(item, hasEnclosures);
    if (hasEnclosures && enclosure == nullptr) {
        return std::nullopt;
    }
    const auto elementText = [&](std::string_view local) -> std::optional<std::string> {
        const XmlElement* element = formatChild(item, local);
        return element != nullptr ? nonEmpty(element->text) : std::nullopt;
    };
    const auto enclosureAttribute = [&](std::string_view local) -> std::optional<std::string> {
        return enclosure != nullptr ? nonEmpty(formatAttribute(*enclosure, local)) : std::nullopt;
    };

    AppcastItem result;
    std::optional<std::string> version = elementText("version");
    if (!version) {
        version = enclosureAttribute("version");
    }
    if (!version) {
        return std::nullopt;
    }
    result.version = std::move(*version);
    result.shortVersion = elementText("shortVersionString");
    if (!result.shortVersion) {
        result.shortVersion = enclosureAttribute("shortVersionString");
    }

    // The plain RSS link (not an Atom one, which has a prefix) is the item's web page.
    std::optional<std::string> download =
        enclosure != nullptr ? webLink(enclosure->attribute("url")) : std::optional<std::string>();
    if (!download) {
        if (const XmlElement* link = item.child("link"); link != nullptr) {
            download = webLink(link->text);
        }
    }
    if (!download) {
        return std::nullopt;
    }
    result.downloadLink = std::move(*download);
    if (const XmlElement* notes = formatChild(item, "releaseNotesLink"); notes != nullptr) {
        result.releaseNotesLink = webLink(notes->text);
    }
    return result;
}

}  // namespace

std::optional<std::vector<AppcastItem>> parseAppcast(std::string_view document) {
    const std::optional<XmlElement> root = parseXml(document);
    if (!root || root->name != "rss") {
        return std::nullopt;
    }
    const XmlElement* channel = root->child("channel");
    if (channel == nullptr) {
        return std::nullopt;
    }
    std::vector<AppcastItem> items;
    for (const XmlElement& child : channel->children) {
        if (child.name != "item") {
            continue;
        }
        if (std::optional<AppcastItem> item = itemOf(child)) {
            items.push_back(std::move(*item));
        }
    }
    return items;
}

std::optional<AppcastItem> newestUpdate(const std::vector<AppcastItem>& items, std::string_view runningVersion) {
    const AppcastItem* newest = nullptr;
    for (const AppcastItem& item : items) {
        if (newest == nullptr || compareVersions(item.version, newest->version) > 0) {
            newest = &item;
        }
    }
    if (newest == nullptr || compareVersions(newest->version, runningVersion) <= 0) {
        return std::nullopt;
    }
    return *newest;
}

}  // namespace vantle
