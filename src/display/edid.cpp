#include "display/edid.h"

#include <algorithm>

namespace vantle {
namespace {

constexpr std::size_t kBaseBlockSize = 128;
constexpr std::uint8_t kHeader[8] = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
// The four 18-byte descriptors of the base block.
constexpr std::size_t kDescriptorOffsets[4] = {54, 72, 90, 108};
constexpr std::uint8_t kMonitorNameTag = 0xFC;

}  // namespace

std::optional<std::string> edidMonitorName(const std::vector<std::uint8_t>& edid) {
    if (edid.size() < kBaseBlockSize || !std::equal(std::begin(kHeader), std::end(kHeader), edid.begin())) {
        return std::nullopt;
    }
    for (std::size_t offset : kDescriptorOffsets) {
        // A display descriptor starts with two zero bytes (a timing descriptor would not).
        if (edid[offset] != 0 || edid[offset + 1] != 0 || edid[offset + 3] != kMonitorNameTag) {
            continue;
        }
        std::string name;
        for (std::size_t index = offset + 5; index < offset + 18 && edid[index] != 0x0A; ++index) {
            // The text is printable ASCII (code page 437 in theory); anything else is noise.
            const std::uint8_t byte = edid[index];
            name.push_back(byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '?');
        }
        while (!name.empty() && name.back() == ' ') {
            name.pop_back();
        }
        if (!name.empty()) {
            return name;
        }
    }
    return std::nullopt;
}

bool sameMonitor(const std::vector<std::uint8_t>& left, const std::vector<std::uint8_t>& right) {
    return left.size() >= kBaseBlockSize && right.size() >= kBaseBlockSize &&
           std::equal(left.begin(), left.begin() + kBaseBlockSize, right.begin());
}

}  // namespace vantle
