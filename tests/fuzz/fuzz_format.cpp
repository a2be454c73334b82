// Feeds arbitrary templates and arguments to the text formatter, and arbitrary numbers to the
// textual description that turns arguments into text. The formatter must agree with a plain
// reading of its rule: every match of \{(\d+)\} whose number indexes an argument is replaced by
// that argument, from the last match to the first, and nothing else changes. A number's
// description must read back as the same number.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <regex>
#include <string>
#include <vector>

#include "fuzz_check.h"
#include "localization/describe.h"
#include "localization/localization.h"

namespace {

using vantle::fuzz::require;

// The rule as written, with the standard regular expressions.
std::string formattedByTheRule(const std::string& templateText, const std::vector<std::string>& arguments) {
    static const std::regex placeholder(R"(\{(\d+)\})");
    std::vector<std::smatch> matches;
    for (auto match = std::sregex_iterator(templateText.begin(), templateText.end(), placeholder);
         match != std::sregex_iterator(); ++match) {
        matches.push_back(*match);
    }
    std::string result = templateText;
    for (auto match = matches.rbegin(); match != matches.rend(); ++match) {
        std::string digits = (*match)[1].str();
        digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size() - 1));
        // Numbers too long for an index stay as they are, as any number past the arguments does.
        if (digits.size() > 18) {
            continue;
        }
        const auto index = static_cast<std::size_t>(std::stoll(digits));
        if (index < arguments.size()) {
            result.replace(static_cast<std::size_t>(match->position(0)), static_cast<std::size_t>(match->length(0)),
                           arguments[index]);
        }
    }
    return result;
}

void checkDescriptions(FuzzedDataProvider& provider) {
    float single = 0;
    double twice = 0;
    const std::vector<std::uint8_t> singleBytes = provider.ConsumeBytes<std::uint8_t>(sizeof single);
    const std::vector<std::uint8_t> doubleBytes = provider.ConsumeBytes<std::uint8_t>(sizeof twice);
    if (!singleBytes.empty()) {
        std::memcpy(&single, singleBytes.data(), singleBytes.size());
    }
    if (!doubleBytes.empty()) {
        std::memcpy(&twice, doubleBytes.data(), doubleBytes.size());
    }

    const std::string singleText = vantle::describe(single);
    const std::string doubleText = vantle::describe(twice);
    if (std::isfinite(single)) {
        require(singleText.find_first_of(".e") != std::string::npos, "a float's description is never a whole number");
        require(std::strtof(singleText.c_str(), nullptr) == single, "a float's description reads back as itself");
    }
    if (std::isfinite(twice)) {
        require(doubleText.find_first_of(".e") != std::string::npos, "a double's description is never a whole number");
        require(std::strtod(doubleText.c_str(), nullptr) == twice, "a double's description reads back as itself");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The standard regular expressions recurse once per character they match; templates are
    // short texts, so longer inputs say nothing new.
    if (size > 2048) {
        return 0;
    }
    FuzzedDataProvider provider(data, size);
    checkDescriptions(provider);
    std::vector<std::string> arguments(provider.ConsumeIntegralInRange<std::size_t>(0, 12));
    for (std::string& argument : arguments) {
        argument = provider.ConsumeRandomLengthString(64);
    }
    const std::string templateText = provider.ConsumeRemainingBytesAsString();

    const std::string result = vantle::Localization::format(templateText, arguments);
    require(result == formattedByTheRule(templateText, arguments), "the formatter follows its rule");
    if (arguments.empty()) {
        require(result == templateText, "without arguments a template stays as it is");
    }
    return 0;
}
