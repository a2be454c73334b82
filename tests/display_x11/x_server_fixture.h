#pragma once

// The display tests run against a real, private Xvfb that scripts/x-server.sh starts in a
// temporary folder, with two monitors: LEFT (1920×1080 at 0,0) on Xvfb's one RandR output
// "screen", and RIGHT (1280×1024 at 1920,0) without an output of its own. CTest runs every test
// in a process of its own, so every test gets a fresh server.

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/child_process.h"
#include "support/temporary_directory.h"

namespace vantle::testing {

class XServerTest : public ::testing::Test {
protected:
    static void SetUpTestSuite();
    static void TearDownTestSuite();

    static std::string display();
    // Runs a program against the private server; the test fails if it fails.
    static std::string run(const std::string& program, const std::vector<std::string>& arguments);

    // A compositing manager, which makes translucent windows possible.
    static void startCompositor();
    static void stopCompositor();

    // Gives Xvfb's output an EDID property, as a real monitor has.
    static void setOutputEdid(const std::vector<std::uint8_t>& edid);
    // Takes it away again, as when the monitor is unplugged.
    static void removeOutputEdid();
    // The X server's gamma ramp of the output, as another program would set it: each channel
    // from 0 up to top.
    static void setGammaTop(std::uint16_t top);
    // The RandR output id of Xvfb's output, which is the display id of LEFT.
    static std::uint32_t leftDisplayId();
    // The brightness of the output's gamma ramp at its top entry, 0..65535.
    static std::uint16_t gammaTop();

private:
    static std::unique_ptr<TemporaryDirectory> directory_;
    static std::unique_ptr<RunningChild> compositor_;
};

}  // namespace vantle::testing
