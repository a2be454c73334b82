#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vantle::testing {

// A valid 128-byte EDID base block for a monitor of the given name and serial number, for tests
// that have no real monitor.
inline std::vector<std::uint8_t> syntheticEdid(const std::string& name, std::uint32_t serial) {
    std::vector<std::uint8_t> edid(128, 0);
    const std::uint8_t header[8] = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
    std::copy(std::begin(header), std::end(header), edid.begin());
    edid[8] = 0x59;  // manufacturer "VTL"
    edid[9] = 0x8C;
    edid[10] = 0x01;  // product code
    for (int byte = 0; byte < 4; ++byte) {
        edid[12 + static_cast<std::size_t>(byte)] = static_cast<std::uint8_t>(serial >> (8 * byte));
    }
    edid[18] = 1;  // EDID 1.4
    edid[19] = 4;
    // Descriptor 2 (offset 72): monitor name, ended by a line feed and padded with blanks.
    edid[72 + 3] = 0xFC;
    std::size_t index = 72 + 5;
    for (char c : name.substr(0, 13)) {
        edid[index++] = static_cast<std::uint8_t>(c);
    }
    if (index < 72 + 18) {
        edid[index++] = 0x0A;
    }
    while (index < 72 + 18) {
        edid[index++] = 0x20;
    }
    std::uint8_t sum = 0;
    for (std::size_t position = 0; position < 127; ++position) {
        sum = static_cast<std::uint8_t>(sum + edid[position]);
    }
    edid[127] = static_cast<std::uint8_t>(256 - sum);
    return edid;
}

}  // namespace vantle::testing
