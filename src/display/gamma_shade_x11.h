#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "display/shade.h"

struct xcb_connection_t;

namespace vantle {

class GammaKeeper;

// One CRTC's gamma ramp: three channels of the same size.
struct GammaRamp {
    std::vector<std::uint16_t> red;
    std::vector<std::uint16_t> green;
    std::vector<std::uint16_t> blue;
    bool operator==(const GammaRamp&) const = default;
};

// The ramp that dims by alpha the way a black cover of that alpha would: every value scaled by
// 1 − alpha, which for the shade's alpha (1 − level) × 0.85 is 0.15 + 0.85 × level.
GammaRamp dimmedRamp(const GammaRamp& original, double alpha);

// Keeps the undimmed ramps on disk while a display is dimmed, so that the next start can put
// them back when the program died with a display dimmed. One file per X display and output.
class SavedGammaRamps {
public:
    SavedGammaRamps(std::filesystem::path directory, std::string xDisplay);

    bool save(const std::string& outputName, const GammaRamp& ramp);
    std::optional<GammaRamp> load(const std::string& outputName) const;
    void remove(const std::string& outputName);
    // The outputs whose ramps are kept.
    std::vector<std::string> outputs() const;

private:
    std::filesystem::path fileFor(const std::string& outputName) const;

    std::filesystem::path directory_;
    std::string prefix_;
};

// A shade made by scaling the gamma ramp of the display's CRTC, for X servers without a
// compositor, where a translucent window cannot dim. The undimmed ramp is put back when the
// shade is ordered out or destroyed. While it dims, the keeper knows the ramp it holds.
class GammaShade final : public ShadePanel {
public:
    GammaShade(xcb_connection_t* connection, std::uint32_t crtc, std::string outputName, SavedGammaRamps& saved,
               GammaKeeper& keeper);
    ~GammaShade() override;

    void setUp(const ScreenFrame& frame) override;
    void setAlpha(double alpha) override;
    void orderOut() override;
    void orderFrontRegardless() override;
    // Writes the dimmed ramp again.
    void raise() override;

private:
    void apply();
    void restore();

    xcb_connection_t* connection_;
    std::uint32_t crtc_;
    std::string outputName_;
    SavedGammaRamps& saved_;
    GammaKeeper& keeper_;
    std::optional<GammaRamp> original_;
    double alpha_ = 0;
    bool shown_ = false;
};

// Reads and writes a CRTC's ramp; empty or false when the server refuses.
std::optional<GammaRamp> readGammaRamp(xcb_connection_t* connection, std::uint32_t crtc);
bool writeGammaRamp(xcb_connection_t* connection, std::uint32_t crtc, const GammaRamp& ramp);

}  // namespace vantle
