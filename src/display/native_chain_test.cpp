#include "display/native_chain.h"

#include <gtest/gtest.h>

#include <map>

namespace vantle {
namespace {

class MapControl final : public NativeDisplayControl {
public:
    void updateDisplays(const std::vector<DisplayIdentity>&) override {}
    std::optional<float> get(std::uint32_t display) override {
        auto found = levels.find(display);
        return found == levels.end() ? std::nullopt : std::optional<float>(found->second);
    }
    bool set(std::uint32_t display, float level) override {
        if (levels.count(display) == 0 || refuse) {
            return false;
        }
        levels[display] = level;
        return true;
    }
    std::map<std::uint32_t, float> levels;
    bool refuse = false;
};

TEST(NativeChainTest, FirstControlThatReadsADisplayAnswersAndTakesItsWrites) {
    MapControl backlight;
    MapControl ddc;
    backlight.levels[1] = 0.3f;
    ddc.levels[1] = 0.9f;
    ddc.levels[2] = 0.6f;
    const NativeBrightnessFunctions functions = chainNativeControls({&backlight, &ddc});
    float level = 0;
    EXPECT_EQ(functions.get(1, &level), 0);
    EXPECT_EQ(level, 0.3f);
    EXPECT_EQ(functions.get(2, &level), 0);
    EXPECT_EQ(level, 0.6f);
    EXPECT_NE(functions.get(3, &level), 0);
    EXPECT_EQ(functions.set(2, 0.1f), 0);
    EXPECT_EQ(ddc.levels[2], 0.1f);
    EXPECT_EQ(backlight.levels.count(2), 0u);
    EXPECT_NE(functions.set(3, 0.1f), 0);
    ddc.refuse = true;
    EXPECT_NE(functions.set(2, 0.4f), 0);
}

TEST(NativeChainTest, NoControlsMeansNoNativeFunctions) {
    const NativeBrightnessFunctions functions = chainNativeControls({});
    EXPECT_FALSE(functions.get);
    EXPECT_FALSE(functions.set);
}

}  // namespace
}  // namespace vantle
