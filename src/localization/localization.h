#pragma once

#include <array>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "localization/describe.h"
#include "localization/strings_file.h"
#include "services/bundle.h"
#include "services/user_defaults.h"

namespace vantle::Localization {

// The languages the program speaks, in the order the language menu offers them.
inline constexpr std::array<std::string_view, 8> supported = {"en", "fr", "nl", "de", "it", "es", "pt", "ru"};

// Each language's name in that language; never translated.
extern const std::map<std::string, std::string, std::less<>> languageNames;

// The supported code of the first identifier whose language part is supported ("pt-BR",
// "pt_PT" and "PT" all give "pt"), or "en" when none is.
std::string resolve(const std::vector<std::string>& identifiers);

// The string table of a language: <code>.lproj/Localizable.strings in the bundle's resources.
// Empty when the folder or file is missing or the file is not a table of strings.
StringTable table(std::string_view code, const Bundle& bundle = mainBundle());

// The key's text in selected, else in fallback, else the key itself.
std::string text(std::string_view key, const StringTable& selected, const StringTable& fallback);

// Replaces every "{n}" whose n indexes arguments with that argument; any other brace text,
// such as "{2}" with two arguments or "{x}", stays as it is.
std::string format(std::string_view templateText, const std::vector<std::string>& arguments);

// A day/month/year date ("24/10/2026") in the medium date style of the language; the text
// unchanged when it is not such a date.
std::string releaseDate(std::string_view dayMonthYear, std::string_view languageCode);
std::string releaseDate(std::string_view dayMonthYear);

// "auto" forgets the chosen language; a supported code makes it win at the next start;
// anything else changes nothing.
void savePreference(std::string_view code, UserDefaults& defaults);
void savePreference(std::string_view code);

// The running language, fixed on first use for the life of the process.
const std::string& language();
// The English table and the running language's table, each loaded once.
const StringTable& english();
const StringTable& selected();

}  // namespace vantle::Localization

namespace vantle {

// The text of a key in the running language, with its placeholders filled from arguments.
template <typename... Arguments>
std::string L(std::string_view key, const Arguments&... arguments) {
    return Localization::format(Localization::text(key, Localization::selected(), Localization::english()),
                                std::vector<std::string>{describe(arguments)...});
}

}  // namespace vantle
