#include "app/switches.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

TEST(SwitchesTest, NoCheckSwitchIsANormalStart) {
    EXPECT_EQ(chooseMode({}), Mode::NormalStart);
    EXPECT_EQ(chooseMode({"--show-settings", "--relaunch-parent", "42"}), Mode::NormalStart);
}

TEST(SwitchesTest, EachCheckSwitchAlone) {
    EXPECT_EQ(chooseMode({"--verify-localization"}), Mode::LocalizationCheck);
    EXPECT_EQ(chooseMode({"--diagnose"}), Mode::Diagnose);
    EXPECT_EQ(chooseMode({"--verify-controls"}), Mode::VerifyControls);
    EXPECT_EQ(chooseMode({"--verify-osd"}), Mode::VerifyOsd);
}

TEST(SwitchesTest, FixedOrderWinsWhateverThePosition) {
    EXPECT_EQ(chooseMode({"--diagnose", "--verify-localization"}), Mode::LocalizationCheck);
    EXPECT_EQ(chooseMode({"--verify-osd", "--verify-controls", "--diagnose"}), Mode::Diagnose);
    EXPECT_EQ(chooseMode({"x", "--verify-osd", "--verify-controls"}), Mode::VerifyControls);
}

TEST(SwitchesTest, OnlyWholeArgumentsCount) {
    EXPECT_EQ(chooseMode({"--diagnose=1", "--verify-osd-now", "-diagnose", "--DIAGNOSE"}), Mode::NormalStart);
}

}  // namespace
}  // namespace vantle
