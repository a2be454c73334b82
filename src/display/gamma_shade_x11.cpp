#include "display/gamma_shade_x11.h"

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <system_error>

#include "display/gamma_keeper_x11.h"
#include "services/file_contents.h"

namespace vantle {
namespace {

constexpr const char* kFileSuffix = ".gamma";

std::vector<std::uint16_t> scaled(const std::vector<std::uint16_t>& channel, double factor) {
    std::vector<std::uint16_t> result;
    result.reserve(channel.size());
    for (std::uint16_t value : channel) {
        result.push_back(static_cast<std::uint16_t>(std::lround(value * factor)));
    }
    return result;
}

// X display names hold ':' and '.', which are fine in file names but not '/'.
std::string safeName(std::string text) {
    for (char& c : text) {
        if (c == '/') {
            c = '_';
        }
    }
    return text;
}

}  // namespace

GammaRamp dimmedRamp(const GammaRamp& original, double alpha) {
    const double factor = std::clamp(1.0 - alpha, 0.0, 1.0);
    return {scaled(original.red, factor), scaled(original.green, factor), scaled(original.blue, factor)};
}

SavedGammaRamps::SavedGammaRamps(std::filesystem::path directory, std::string xDisplay)
    : directory_(std::move(directory)), prefix_(safeName(xDisplay) + "-") {}

std::filesystem::path SavedGammaRamps::fileFor(const std::string& outputName) const {
    return directory_ / (prefix_ + safeName(outputName) + kFileSuffix);
}

bool SavedGammaRamps::save(const std::string& outputName, const GammaRamp& ramp) {
    std::error_code error;
    std::filesystem::create_directories(directory_, error);
    std::ostringstream text;
    for (const std::vector<std::uint16_t>* channel : {&ramp.red, &ramp.green, &ramp.blue}) {
        for (std::uint16_t value : *channel) {
            text << value << ' ';
        }
        text << '\n';
    }
    // Written beside and renamed, so that a crash never leaves half a ramp to restore.
    const std::filesystem::path file = fileFor(outputName);
    std::filesystem::path temporary = file;
    temporary += ".tmp";
    {
        std::ofstream out(temporary, std::ios::trunc);
        out << text.str();
        if (!out.flush()) {
            return false;
        }
    }
    std::filesystem::rename(temporary, file, error);
    return !error;
}

std::optional<GammaRamp> SavedGammaRamps::load(const std::string& outputName) const {
    const std::optional<std::string> text = readFileContents(fileFor(outputName));
    if (!text) {
        return std::nullopt;
    }
    std::istringstream lines(*text);
    GammaRamp ramp;
    for (std::vector<std::uint16_t>* channel : {&ramp.red, &ramp.green, &ramp.blue}) {
        std::string line;
        if (!std::getline(lines, line)) {
            return std::nullopt;
        }
        std::istringstream values(line);
        for (unsigned long value = 0; values >> value;) {
            if (value > 0xFFFF) {
                return std::nullopt;
            }
            channel->push_back(static_cast<std::uint16_t>(value));
        }
    }
    if (ramp.red.empty() || ramp.red.size() != ramp.green.size() || ramp.red.size() != ramp.blue.size()) {
        return std::nullopt;
    }
    return ramp;
}

void SavedGammaRamps::remove(const std::string& outputName) {
    std::error_code ignored;
    std::filesystem::remove(fileFor(outputName), ignored);
}

std::vector<std::string> SavedGammaRamps::outputs() const {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(directory_, error)) {
        const std::string file = entry.path().filename().string();
        if (file.starts_with(prefix_) && file.ends_with(kFileSuffix)) {
            names.push_back(file.substr(prefix_.size(), file.size() - prefix_.size() - std::strlen(kFileSuffix)));
        }
    }
    return names;
}

std::optional<GammaRamp> readGammaRamp(xcb_connection_t* connection, std::uint32_t crtc) {
    std::unique_ptr<xcb_randr_get_crtc_gamma_reply_t, decltype(&std::free)> reply(
        xcb_randr_get_crtc_gamma_reply(connection, xcb_randr_get_crtc_gamma(connection, crtc), nullptr), &std::free);
    if (!reply || reply->size == 0) {
        return std::nullopt;
    }
    const std::size_t size = reply->size;
    const std::uint16_t* red = xcb_randr_get_crtc_gamma_red(reply.get());
    const std::uint16_t* green = xcb_randr_get_crtc_gamma_green(reply.get());
    const std::uint16_t* blue = xcb_randr_get_crtc_gamma_blue(reply.get());
    return GammaRamp{{red, red + size}, {green, green + size}, {blue, blue + size}};
}

bool writeGammaRamp(xcb_connection_t* connection, std::uint32_t crtc, const GammaRamp& ramp) {
    const xcb_void_cookie_t cookie =
        xcb_randr_set_crtc_gamma_checked(connection, crtc, static_cast<std::uint16_t>(ramp.red.size()),
                                         ramp.red.data(), ramp.green.data(), ramp.blue.data());
    std::unique_ptr<xcb_generic_error_t, decltype(&std::free)> error(xcb_request_check(connection, cookie), &std::free);
    return error == nullptr;
}

GammaShade::GammaShade(xcb_connection_t* connection, std::uint32_t crtc, std::string outputName,
                       SavedGammaRamps& saved, GammaKeeper& keeper)
    : connection_(connection), crtc_(crtc), outputName_(std::move(outputName)), saved_(saved), keeper_(keeper) {}

GammaShade::~GammaShade() {
    restore();
}

void GammaShade::setUp(const ScreenFrame&) {
    // The ramp belongs to the CRTC, which always covers the whole output.
}

void GammaShade::setAlpha(double alpha) {
    alpha_ = alpha;
    if (shown_) {
        apply();
    }
}

void GammaShade::orderOut() {
    restore();
}

void GammaShade::orderFrontRegardless() {
    if (!original_) {
        original_ = readGammaRamp(connection_, crtc_);
        if (!original_) {
            return;
        }
        saved_.save(outputName_, *original_);
    }
    shown_ = true;
    apply();
}

void GammaShade::raise() {
    if (shown_) {
        apply();
    }
}

void GammaShade::apply() {
    if (original_) {
        GammaRamp dimmed = dimmedRamp(*original_, alpha_);
        writeGammaRamp(connection_, crtc_, dimmed);
        keeper_.hold(crtc_, std::move(dimmed));
    }
}

void GammaShade::restore() {
    keeper_.release(crtc_);
    if (original_) {
        writeGammaRamp(connection_, crtc_, *original_);
        saved_.remove(outputName_);
        original_.reset();
    }
    shown_ = false;
}

}  // namespace vantle
