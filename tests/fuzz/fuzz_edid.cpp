// Feeds arbitrary bytes to the EDID reader, as a monitor, a docking station or a driver may hand
// them over. A monitor name it finds must be printable text without the padding around it and
// no longer than a descriptor holds, and a block must always be the same monitor as itself.
#include <cstdint>
#include <string>
#include <vector>

#include "display/edid.h"
#include "fuzz_check.h"

using vantle::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::uint8_t> edid(data, data + size);
    if (const std::optional<std::string> name = vantle::edidMonitorName(edid)) {
        require(!name->empty() && name->size() <= 13, "a monitor name is 1 to 13 characters");
        require(name->back() != ' ', "a monitor name ends without its padding");
        for (char c : *name) {
            require(c >= 0x20 && c < 0x7F, "a monitor name is printable text");
        }
    }
    require(vantle::sameMonitor(edid, edid) == (size >= 128), "a whole block is the same monitor as itself");
    return 0;
}
