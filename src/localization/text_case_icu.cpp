#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <string>

#include "localization/text_case.h"

namespace vantle {
namespace {

// The folded UTF-16 form of UTF-8 text; empty when the text is not valid UTF-8.
std::u16string folded(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = 0;
    u_strFromUTF8(nullptr, 0, &length, text.data(), static_cast<int32_t>(text.size()), &status);
    if (status != U_BUFFER_OVERFLOW_ERROR && U_FAILURE(status)) {
        return {};
    }
    std::u16string utf16(static_cast<std::size_t>(length), u'\0');
    status = U_ZERO_ERROR;
    u_strFromUTF8(utf16.data(), length, nullptr, text.data(), static_cast<int32_t>(text.size()), &status);
    if (U_FAILURE(status)) {
        return {};
    }
    // Folding can lengthen the text (ß becomes ss); ask for the size first.
    status = U_ZERO_ERROR;
    const int32_t foldedLength = u_strFoldCase(nullptr, 0, utf16.data(), length, U_FOLD_CASE_DEFAULT, &status);
    std::u16string result(static_cast<std::size_t>(foldedLength), u'\0');
    status = U_ZERO_ERROR;
    u_strFoldCase(result.data(), foldedLength, utf16.data(), length, U_FOLD_CASE_DEFAULT, &status);
    return U_FAILURE(status) ? std::u16string{} : result;
}

}  // namespace

bool containsIgnoringCase(std::string_view text, std::string_view part) {
    return folded(text).find(folded(part)) != std::u16string::npos;
}

}  // namespace vantle
