#include <unicode/udat.h>
#include <unicode/ustring.h>

#include <memory>
#include <string>

#include "localization/localization.h"

namespace vantle::Localization {
namespace {

struct DateFormatClose {
    void operator()(UDateFormat* format) const { udat_close(format); }
};
using DateFormat = std::unique_ptr<UDateFormat, DateFormatClose>;

std::u16string toUtf16(std::string_view text) {
    std::u16string result(text.size() + 1, u'\0');
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(result.data(), static_cast<int32_t>(result.size()), &length, text.data(),
                  static_cast<int32_t>(text.size()), &status);
    if (U_FAILURE(status)) {
        return {};
    }
    result.resize(static_cast<std::size_t>(length));
    return result;
}

std::string toUtf8(const std::u16string& text) {
    std::string result(text.size() * 3 + 1, '\0');
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8(result.data(), static_cast<int32_t>(result.size()), &length, text.data(),
                static_cast<int32_t>(text.size()), &status);
    if (U_FAILURE(status)) {
        return {};
    }
    result.resize(static_cast<std::size_t>(length));
    return result;
}

// Parse and format both in UTC, so the day never shifts with the user's time zone.
constexpr UChar kUtc[] = u"UTC";

// The date the text names, or empty when it is not exactly day/month/year.
std::optional<UDate> parseDayMonthYear(std::string_view text) {
    const std::u16string pattern = u"dd/MM/yyyy";
    UErrorCode status = U_ZERO_ERROR;
    DateFormat parser(udat_open(UDAT_PATTERN, UDAT_PATTERN, "en_US_POSIX", kUtc, -1, pattern.data(),
                                static_cast<int32_t>(pattern.size()), &status));
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    udat_setLenient(parser.get(), false);
    const std::u16string input = toUtf16(text);
    if (input.empty()) {
        return std::nullopt;
    }
    int32_t position = 0;
    const UDate date =
        udat_parse(parser.get(), input.data(), static_cast<int32_t>(input.size()), &position, &status);
    // Trailing text means the whole was not a date.
    if (U_FAILURE(status) || position != static_cast<int32_t>(input.size())) {
        return std::nullopt;
    }
    return date;
}

}  // namespace

std::string releaseDate(std::string_view dayMonthYear, std::string_view languageCode) {
    const std::optional<UDate> date = parseDayMonthYear(dayMonthYear);
    if (!date) {
        return std::string(dayMonthYear);
    }
    UErrorCode status = U_ZERO_ERROR;
    const std::string locale(languageCode);
    DateFormat formatter(udat_open(UDAT_NONE, UDAT_MEDIUM, locale.c_str(), kUtc, -1, nullptr, 0, &status));
    if (U_FAILURE(status)) {
        return std::string(dayMonthYear);
    }
    std::u16string formatted(64, u'\0');
    const int32_t length = udat_format(formatter.get(), *date, formatted.data(),
                                       static_cast<int32_t>(formatted.size()), nullptr, &status);
    if (U_FAILURE(status)) {
        return std::string(dayMonthYear);
    }
    formatted.resize(static_cast<std::size_t>(length));
    return toUtf8(formatted);
}

}  // namespace vantle::Localization
