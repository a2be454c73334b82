#include "display/backlight/backlight_sysfs_linux.h"

#include "display/connector_name_linux.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

namespace vantle::backlight {
namespace {

std::optional<std::string> readText(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (file.bad()) {
        return std::nullopt;
    }
    return text;
}

// Attributes end with a line break, which is not part of their value.
std::optional<std::string> readWord(const std::filesystem::path& path) {
    std::optional<std::string> text = readText(path);
    if (text) {
        while (!text->empty() && (text->back() == '\n' || text->back() == ' ')) {
            text->pop_back();
        }
    }
    return text;
}

std::optional<BacklightType> typeNamed(const std::string& name) {
    if (name == "firmware") {
        return BacklightType::Firmware;
    }
    if (name == "platform") {
        return BacklightType::Platform;
    }
    if (name == "raw") {
        return BacklightType::Raw;
    }
    return std::nullopt;
}

// Where a sysfs link leads, with every link on the way resolved; empty when it leads nowhere.
std::filesystem::path resolved(const std::filesystem::path& link) {
    std::error_code error;
    std::filesystem::path target = std::filesystem::canonical(link, error);
    return error ? std::filesystem::path() : target;
}

std::vector<std::filesystem::path> cardPathsOf(const std::filesystem::path& drmClass, const std::string& sysfsName) {
    std::vector<std::filesystem::path> paths;
    const std::string card = sysfsName.substr(0, sysfsName.find('-'));
    for (const std::filesystem::path& candidate : {drmClass / card, drmClass / card / "device"}) {
        if (std::filesystem::path path = resolved(candidate); !path.empty()) {
            paths.push_back(path);
        }
    }
    return paths;
}

}  // namespace

std::vector<BacklightDevice> readBacklights(const std::filesystem::path& root) {
    std::vector<BacklightDevice> backlights;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(root / "sys/class/backlight", error)) {
        const std::optional<std::string> typeName = readWord(entry.path() / "type");
        const std::optional<BacklightType> type = typeName ? typeNamed(*typeName) : std::nullopt;
        if (!type) {
            continue;
        }
        backlights.push_back({entry.path().filename().string(), *type, resolved(entry.path() / "device")});
    }
    return backlights;
}

std::vector<PanelConnector> readConnectedPanels(const std::filesystem::path& root) {
    std::vector<PanelConnector> panels;
    const std::filesystem::path drmClass = root / "sys/class/drm";
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(drmClass, error)) {
        const std::string sysfsName = entry.path().filename().string();
        if (!isInternalConnectorName(sysfsName) || readWord(entry.path() / "status") != "connected") {
            continue;
        }
        PanelConnector panel{sysfsName, std::string(withoutCardPrefix(sysfsName)), {}, cardPathsOf(drmClass, sysfsName)};
        if (const std::optional<std::string> edid = readText(entry.path() / "edid")) {
            panel.edid.assign(edid->begin(), edid->end());
        }
        panels.push_back(std::move(panel));
    }
    return panels;
}

std::optional<std::uint32_t> readNumber(const std::filesystem::path& path) {
    const std::optional<std::string> text = readWord(path);
    if (!text || text->empty()) {
        return std::nullopt;
    }
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), value);
    if (error != std::errc() || end != text->data() + text->size()) {
        return std::nullopt;
    }
    return value;
}

WriteResult writeNumber(const std::filesystem::path& path, std::uint32_t value) {
    // Trying the open is the only reliable test: access() answers for the real user id and knows
    // nothing of capabilities, read-only mounts or the attribute's own refusal.
    const int fd = ::open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    if (fd < 0) {
        return WriteResult::NotWritable;
    }
    // The kernel takes the whole value from one write, as "echo 120 > brightness" sends it.
    const std::string text = std::to_string(value) + "\n";
    ssize_t written = -1;
    do {
        written = ::write(fd, text.data(), text.size());
    } while (written < 0 && errno == EINTR);
    const bool closed = ::close(fd) == 0;
    return written == static_cast<ssize_t>(text.size()) && closed ? WriteResult::Written : WriteResult::Refused;
}

}  // namespace vantle::backlight
