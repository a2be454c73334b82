#include "display/gamma_keeper_x11.h"

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

namespace vantle {
namespace {

// Whether the server's answer shows exactly the ramp held.
bool shows(xcb_randr_get_crtc_gamma_reply_t* reply, const GammaRamp& ramp) {
    if (reply->size != ramp.red.size()) {
        return false;
    }
    return std::equal(ramp.red.begin(), ramp.red.end(), xcb_randr_get_crtc_gamma_red(reply)) &&
           std::equal(ramp.green.begin(), ramp.green.end(), xcb_randr_get_crtc_gamma_green(reply)) &&
           std::equal(ramp.blue.begin(), ramp.blue.end(), xcb_randr_get_crtc_gamma_blue(reply));
}

}  // namespace

void GammaKeeper::hold(std::uint32_t crtc, GammaRamp ramp) {
    held_[crtc] = std::move(ramp);
}

void GammaKeeper::release(std::uint32_t crtc) {
    held_.erase(crtc);
}

std::size_t GammaKeeper::restoreChanged() {
    if (held_.empty()) {
        return 0;
    }
    std::vector<std::pair<const std::uint32_t, GammaRamp>*> asked;
    std::vector<xcb_randr_get_crtc_gamma_cookie_t> cookies;
    for (auto& entry : held_) {
        asked.push_back(&entry);
        cookies.push_back(xcb_randr_get_crtc_gamma(connection_, entry.first));
    }
    std::size_t written = 0;
    for (std::size_t index = 0; index < cookies.size(); ++index) {
        std::unique_ptr<xcb_randr_get_crtc_gamma_reply_t, decltype(&std::free)> reply(
            xcb_randr_get_crtc_gamma_reply(connection_, cookies[index], nullptr), &std::free);
        const auto& [crtc, ramp] = *asked[index];
        // A CRTC that is gone, or whose ramp changed its size with the mode or the hardware,
        // cannot take the held ramp; that is for the next change of the screens to sort out.
        if (!reply || reply->size != ramp.red.size() || shows(reply.get(), ramp)) {
            continue;
        }
        if (writeGammaRamp(connection_, crtc, ramp)) {
            ++written;
        }
    }
    return written;
}

}  // namespace vantle
