#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vantle::testing {

// Builds a stand-in for the kernel's sysfs below a temporary root, laid out as on a laptop: the
// DRM cards and their connectors under sys/devices with links from sys/class/drm, and backlight
// class folders under sys/class/backlight whose device links lead into sys/devices.
class BacklightTree {
public:
    explicit BacklightTree(std::filesystem::path root) : root_(std::move(root)) {}

    const std::filesystem::path& root() const { return root_; }

    // A DRM card on a PCI device ("0000:00:02.0"); returns the card's folder.
    std::filesystem::path addCard(const std::string& card, const std::string& pciAddress);
    // A connector of an added card, such as ("card0", "eDP-1"); returns its folder. Without an
    // EDID the connector has no edid file at all.
    std::filesystem::path addConnector(const std::string& card, const std::string& connector,
                                       const std::optional<std::vector<std::uint8_t>>& edid,
                                       const std::string& status = "connected");

    // A backlight class device to add, 50 of 100 unless told otherwise.
    struct Backlight {
        Backlight(std::string deviceName, std::string deviceType)
            : name(std::move(deviceName)), type(std::move(deviceType)) {}
        Backlight& withMaximum(std::uint32_t value) { maxBrightness = value; return *this; }
        Backlight& withBrightness(std::uint32_t value) { brightness = value; return *this; }
        Backlight& withActual(std::uint32_t value) { actualBrightness = value; return *this; }
        // What the device link leads to; without one there is no link.
        Backlight& withDevice(std::filesystem::path value) { device = std::move(value); return *this; }

        std::string name;
        std::string type;  // "firmware", "platform" or "raw"
        std::uint32_t maxBrightness = 100;
        std::uint32_t brightness = 50;
        std::optional<std::uint32_t> actualBrightness;
        std::filesystem::path device;
    };
    // Returns the backlight's folder.
    std::filesystem::path addBacklight(const Backlight& backlight);
    std::filesystem::path backlightFolder(const std::string& name) const;

    // The brightness attribute's text without its line break.
    std::string brightnessOf(const std::string& name) const;

    // Where a card's PCI device lives.
    std::filesystem::path pciDevice(const std::string& pciAddress) const;

private:
    std::filesystem::path root_;
};

// A 128-byte base EDID block whose product code and serial number tell monitors apart, followed
// by extensionBlocks blocks of 128 bytes (the connectors of real panels often carry one).
std::vector<std::uint8_t> edidOf(std::uint16_t product, std::uint32_t serial, int extensionBlocks = 0);

}  // namespace vantle::testing
