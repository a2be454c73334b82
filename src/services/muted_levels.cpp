#include "services/muted_levels.h"

#include "services/settings_keys.h"

namespace vantle {

SavedLevels loadSavedLevels(const UserDefaults& defaults) {
    std::optional<PlistValue::Dictionary> stored = defaults.dictionary(settings::kMutedLevels);
    if (!stored) {
        return {};
    }
    SavedLevels saved;
    for (const auto& [uid, value] : *stored) {
        const PlistValue::Array* levels = value.asArray();
        if (levels == nullptr) {
            return {};
        }
        std::vector<float>& converted = saved[uid];
        converted.reserve(levels->size());
        for (const PlistValue& level : *levels) {
            std::optional<double> number = level.asNumber();
            if (!number) {
                return {};
            }
            converted.push_back(static_cast<float>(*number));
        }
    }
    return saved;
}

bool storeSavedLevels(UserDefaults& defaults, const SavedLevels& saved) {
    PlistValue::Dictionary stored;
    for (const auto& [uid, levels] : saved) {
        PlistValue::Array numbers;
        numbers.reserve(levels.size());
        for (float level : levels) {
            numbers.emplace_back(static_cast<double>(level));
        }
        stored.emplace(uid, std::move(numbers));
    }
    return defaults.set(settings::kMutedLevels, std::move(stored));
}

}  // namespace vantle
