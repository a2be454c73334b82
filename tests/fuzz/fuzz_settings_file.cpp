// Feeds arbitrary bytes to the settings file reader: the property-list parse of any format, the
// settings domain built from it and every typed read of every key the program uses. Beyond not
// crashing, a settings dictionary that was read must survive the store's own rewrite as XML and
// read back with the same meaning; otherwise the first change the user makes would leave a file
// that the next start sets aside as broken.
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz_check.h"
#include "services/muted_levels.h"
#include "services/property_list_codec.h"
#include "services/settings_keys.h"
#include "services/testing/memory_defaults_store.h"
#include "services/user_defaults.h"

namespace {

using vantle::PlistValue;
using vantle::fuzz::require;

constexpr std::string_view kKeys[] = {
    vantle::settings::kLinked,
    vantle::settings::kSoftwareBrightness,
    vantle::settings::kMutedLevels,
    vantle::settings::kKeyboardStatus,
    vantle::settings::kKeyboardSeenBuild,
    vantle::settings::kKeyboardPendingRepairBuild,
    vantle::settings::kLoginSetupDone,
    vantle::settings::kLanguagePreference,
    vantle::settings::kAppleLanguages,
    vantle::settings::kSeparatorPaths,
    vantle::settings::kSeparatorTheme,
    vantle::settings::kSeparatorArtworkVersion,
    vantle::settings::kDockExpectedOrder,
    vantle::settings::kAppleInterfaceStyle,
};

// Equality of meaning: a real that is not a number equals itself here, as it would to a
// user reading the file.
bool sameMeaning(const PlistValue& left, const PlistValue& right) {
    if (left.asReal() != nullptr && right.asReal() != nullptr && std::isnan(*left.asReal())) {
        return std::isnan(*right.asReal());
    }
    if (const PlistValue::Array* leftArray = left.asArray()) {
        const PlistValue::Array* rightArray = right.asArray();
        if (rightArray == nullptr || rightArray->size() != leftArray->size()) {
            return false;
        }
        for (std::size_t index = 0; index < leftArray->size(); ++index) {
            if (!sameMeaning((*leftArray)[index], (*rightArray)[index])) {
                return false;
            }
        }
        return true;
    }
    if (const PlistValue::Dictionary* leftDictionary = left.asDictionary()) {
        const PlistValue::Dictionary* rightDictionary = right.asDictionary();
        if (rightDictionary == nullptr || rightDictionary->size() != leftDictionary->size()) {
            return false;
        }
        for (auto leftEntry = leftDictionary->begin(), rightEntry = rightDictionary->begin();
             leftEntry != leftDictionary->end(); ++leftEntry, ++rightEntry) {
            if (leftEntry->first != rightEntry->first || !sameMeaning(leftEntry->second, rightEntry->second)) {
                return false;
            }
        }
        return true;
    }
    return left == right;
}

void readEveryKey(const PlistValue::Dictionary& domain) {
    vantle::testing::MemoryDefaultsStore store;
    store.values = domain;
    vantle::UserDefaults defaults(store);
    defaults.registerDefaults({{std::string(vantle::settings::kLinked), PlistValue(true)}});
    for (const std::string_view key : kKeys) {
        const std::optional<PlistValue> stored = store.object(key);
        require(defaults.object(key).has_value() == (stored.has_value() || key == vantle::settings::kLinked),
                "a key reads its stored value or its registered default");
        const bool boolean = defaults.boolean(key);
        if (stored && stored->asBool() != nullptr) {
            require(boolean == *stored->asBool(), "a stored boolean reads as itself");
        } else if (key != vantle::settings::kLinked) {
            require(!boolean, "a missing or mistyped boolean reads false");
        } else {
            require(boolean, "a missing or mistyped \"linked\" reads its registered default");
        }
        const std::int64_t integer = defaults.integer(key);
        require(stored && stored->asInteger() != nullptr ? integer == *stored->asInteger() : integer == 0,
                "an integer reads as itself, anything else as 0");
        require(defaults.string(key).has_value() == (stored && stored->asString() != nullptr),
                "a string reads exactly when one is stored");
        require(defaults.stringArray(key).has_value() == (stored && stored->asStringArray().has_value()),
                "a string array reads exactly when one is stored");
        require(defaults.dictionary(key).has_value() == (stored && stored->asDictionary() != nullptr),
                "a dictionary reads exactly when one is stored");
    }

    const vantle::SavedLevels saved = vantle::loadSavedLevels(defaults);
    if (!saved.empty()) {
        const std::optional<PlistValue> stored = store.object(vantle::settings::kMutedLevels);
        const PlistValue::Dictionary& muted = *stored->asDictionary();
        require(saved.size() == muted.size(), "muted levels are read whole or not at all");
        for (const auto& [uid, levels] : saved) {
            require(levels.size() == muted.find(uid)->second.asArray()->size(), "every level of an output is read");
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::optional<PlistValue> parsed = vantle::parsePropertyList(bytes);
    if (!parsed) {
        return 0;
    }
    const PlistValue::Dictionary* domain = parsed->asDictionary();
    if (domain == nullptr) {
        // The store sets such a file aside and starts empty; nothing more is read from it.
        return 0;
    }
    readEveryKey(*domain);

    const std::string rewritten = vantle::serializePropertyListXml(*parsed);
    const std::optional<PlistValue> reread = vantle::parsePropertyList(rewritten);
    require(reread.has_value(), "a settings file the store rewrites reads back");
    require(sameMeaning(*parsed, *reread), "a settings file the store rewrites keeps its meaning");
    return 0;
}
