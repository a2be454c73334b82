#include "localization/localization.h"

#include <algorithm>
#include <cctype>
#include <charconv>

#include "services/file_contents.h"
#include "services/property_list_codec.h"
#include "services/settings_keys.h"

namespace vantle::Localization {

const std::map<std::string, std::string, std::less<>> languageNames = {
    {"en", "English"}, {"fr", "Français"},  {"nl", "Nederlands"}, {"de", "Deutsch"},
    {"it", "Italiano"}, {"es", "Español"}, {"pt", "Português"},  {"ru", "Русский"},
};

namespace {

bool isSupported(std::string_view code) {
    return std::find(supported.begin(), supported.end(), code) != supported.end();
}

// The language part of an identifier: "pt_BR" and "pt-br" both give "pt".
std::string languagePart(std::string identifier) {
    std::replace(identifier.begin(), identifier.end(), '_', '-');
    const std::size_t start = identifier.find_first_not_of('-');
    if (start == std::string::npos) {
        return {};
    }
    std::string part = identifier.substr(start, identifier.find('-', start) - start);
    std::transform(part.begin(), part.end(), part.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return part;
}

// Apple also reads string tables written as XML or binary property lists; so do we.
bool looksLikeSerializedPropertyList(std::string_view bytes) {
    if (bytes.starts_with("bplist")) {
        return true;
    }
    const std::size_t start = bytes.find_first_not_of(" \t\r\n");
    return start != std::string_view::npos && bytes.substr(start).starts_with("<");
}

std::optional<StringTable> tableFromPropertyList(std::string_view bytes) {
    std::optional<PlistValue> parsed = parsePropertyList(bytes);
    const PlistValue::Dictionary* dictionary = parsed ? parsed->asDictionary() : nullptr;
    if (dictionary == nullptr) {
        return std::nullopt;
    }
    StringTable table;
    for (const auto& [key, value] : *dictionary) {
        const std::string* string = value.asString();
        if (string == nullptr) {
            return std::nullopt;
        }
        table.emplace(key, *string);
    }
    return table;
}

}  // namespace

std::string resolve(const std::vector<std::string>& identifiers) {
    for (const std::string& identifier : identifiers) {
        std::string code = languagePart(identifier);
        if (isSupported(code)) {
            return code;
        }
    }
    return "en";
}

StringTable table(std::string_view code, const Bundle& bundle) {
    std::optional<std::filesystem::path> folder = bundle.resource(code, "lproj");
    if (!folder) {
        return {};
    }
    const std::optional<std::string> bytes = readFileContents(*folder / "Localizable.strings");
    if (!bytes) {
        return {};
    }
    std::optional<StringTable> parsed =
        looksLikeSerializedPropertyList(*bytes) ? tableFromPropertyList(*bytes) : parseStringsFile(*bytes);
    return parsed.value_or(StringTable{});
}

std::string text(std::string_view key, const StringTable& selected, const StringTable& fallback) {
    if (auto found = selected.find(key); found != selected.end()) {
        return found->second;
    }
    if (auto found = fallback.find(key); found != fallback.end()) {
        return found->second;
    }
    return std::string(key);
}

std::string format(std::string_view templateText, const std::vector<std::string>& arguments) {
    std::string result;
    result.reserve(templateText.size());
    std::size_t position = 0;
    while (position < templateText.size()) {
        const std::size_t open = templateText.find('{', position);
        if (open == std::string_view::npos) {
            break;
        }
        std::size_t digitsEnd = open + 1;
        while (digitsEnd < templateText.size() && templateText[digitsEnd] >= '0' && templateText[digitsEnd] <= '9') {
            ++digitsEnd;
        }
        const bool isPlaceholder =
            digitsEnd > open + 1 && digitsEnd < templateText.size() && templateText[digitsEnd] == '}';
        std::size_t index = 0;
        const bool parsed =
            isPlaceholder &&
            std::from_chars(templateText.data() + open + 1, templateText.data() + digitsEnd, index).ec == std::errc{};
        if (parsed && index < arguments.size()) {
            result.append(templateText.substr(position, open - position));
            result.append(arguments[index]);
            position = digitsEnd + 1;
        } else {
            // Not a placeholder we can fill: keep the brace and look again right after it, so
            // "{{0}" still fills the inner placeholder.
            result.append(templateText.substr(position, open + 1 - position));
            position = open + 1;
        }
    }
    result.append(templateText.substr(std::min(position, templateText.size())));
    return result;
}

void savePreference(std::string_view code, UserDefaults& defaults) {
    if (code == "auto") {
        defaults.set(settings::kLanguagePreference, "auto");
        defaults.remove(settings::kAppleLanguages);
        return;
    }
    if (!isSupported(code)) {
        return;
    }
    defaults.set(settings::kLanguagePreference, std::string(code));
    defaults.set(settings::kAppleLanguages, PlistValue::stringArray({std::string(code)}));
}

}  // namespace vantle::Localization
