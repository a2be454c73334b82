#include "display/backlight/testing/backlight_tree.h"

#include <numeric>

#include "support/temporary_directory.h"

namespace vantle::testing {

std::filesystem::path BacklightTree::pciDevice(const std::string& pciAddress) const {
    return root_ / "sys/devices/pci0000:00" / pciAddress;
}

std::filesystem::path BacklightTree::addCard(const std::string& card, const std::string& pciAddress) {
    const std::filesystem::path folder = pciDevice(pciAddress) / "drm" / card;
    std::filesystem::create_directories(folder);
    std::filesystem::create_directory_symlink(pciDevice(pciAddress), folder / "device");
    std::filesystem::create_directories(root_ / "sys/class/drm");
    std::filesystem::create_directory_symlink(folder, root_ / "sys/class/drm" / card);
    return folder;
}

std::filesystem::path BacklightTree::addConnector(const std::string& card, const std::string& connector,
                                                  const std::optional<std::vector<std::uint8_t>>& edid,
                                                  const std::string& status) {
    const std::string name = card + "-" + connector;
    const std::filesystem::path folder = std::filesystem::canonical(root_ / "sys/class/drm" / card) / name;
    writeFile(folder / "status", status + "\n");
    if (edid) {
        writeFile(folder / "edid", std::string(edid->begin(), edid->end()));
    }
    std::filesystem::create_directory_symlink(folder, root_ / "sys/class/drm" / name);
    return folder;
}

std::filesystem::path BacklightTree::addBacklight(const Backlight& backlight) {
    const std::filesystem::path folder = backlightFolder(backlight.name);
    writeFile(folder / "type", backlight.type + "\n");
    writeFile(folder / "max_brightness", std::to_string(backlight.maxBrightness) + "\n");
    writeFile(folder / "brightness", std::to_string(backlight.brightness) + "\n");
    if (backlight.actualBrightness) {
        writeFile(folder / "actual_brightness", std::to_string(*backlight.actualBrightness) + "\n");
    }
    if (!backlight.device.empty()) {
        std::filesystem::create_directories(backlight.device);
        std::filesystem::create_directory_symlink(backlight.device, folder / "device");
    }
    return folder;
}

std::filesystem::path BacklightTree::backlightFolder(const std::string& name) const {
    return root_ / "sys/class/backlight" / name;
}

std::string BacklightTree::brightnessOf(const std::string& name) const {
    std::string text = readFile(backlightFolder(name) / "brightness");
    if (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    return text;
}

std::vector<std::uint8_t> edidOf(std::uint16_t product, std::uint32_t serial, int extensionBlocks) {
    std::vector<std::uint8_t> edid(128 * static_cast<std::size_t>(1 + extensionBlocks), 0);
    const std::uint8_t header[] = {0x00, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0x00};
    std::copy(std::begin(header), std::end(header), edid.begin());
    edid[8] = 0x30;  // the manufacturer id "LEN"; the product and serial tell the panels apart
    edid[9] = 0xae;
    edid[10] = static_cast<std::uint8_t>(product & 0xff);
    edid[11] = static_cast<std::uint8_t>(product >> 8);
    for (int byte = 0; byte < 4; ++byte) {
        edid[12 + static_cast<std::size_t>(byte)] = static_cast<std::uint8_t>(serial >> (8 * byte));
    }
    edid[126] = static_cast<std::uint8_t>(extensionBlocks);
    const unsigned sum = std::accumulate(edid.begin(), edid.begin() + 127, 0u);
    edid[127] = static_cast<std::uint8_t>((256 - sum % 256) % 256);
    for (std::size_t block = 1; block <= static_cast<std::size_t>(extensionBlocks); ++block) {
        edid[128 * block] = 0x02;  // a CEA extension tag, so the block differs from zeros
    }
    return edid;
}

}  // namespace vantle::testing
