#include "app/instance_name_x11.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

TEST(InstanceNameTest, OneNamePerUserAndDisplay) {
    EXPECT_EQ(instanceName(1000, ":0"), "vantle-control.1000.:0");
    EXPECT_NE(instanceName(1000, ":0"), instanceName(1001, ":0"));
    EXPECT_NE(instanceName(1000, ":0"), instanceName(1000, ":1"));
}

TEST(InstanceNameTest, ScreenNumberDoesNotMakeAnotherSession) {
    EXPECT_EQ(instanceName(1000, ":0.0"), instanceName(1000, ":0"));
    EXPECT_EQ(instanceName(1000, ":3.1"), instanceName(1000, ":3"));
    EXPECT_EQ(instanceName(1000, "workstation:2.0"), "vantle-control.1000.workstation:2");
}

TEST(InstanceNameTest, MissingDisplayMeansTheDefaultOne) {
    EXPECT_EQ(instanceName(0, std::nullopt), instanceName(0, ":0"));
}

TEST(InstanceNameTest, UnusualBytesBecomeUnderscores) {
    EXPECT_EQ(instanceName(7, "/tmp/launch-x/org.x:0"), "vantle-control.7._tmp_launch-x_org.x:0");
    EXPECT_EQ(instanceName(7, std::string(":1\n\0", 4)), "vantle-control.7.:1__");
}

}  // namespace
}  // namespace vantle
