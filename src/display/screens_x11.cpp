#include "display/screens_x11.h"

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>
#include <string>

#include "display/edid.h"
#include "display/work_area.h"

namespace vantle {
namespace {

template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply>
ReplyPtr<Reply> own(Reply* reply) {
    return ReplyPtr<Reply>(reply, &std::free);
}

constexpr std::uint32_t kSyntheticIdBit = 0x80000000u;

xcb_intern_atom_cookie_t internAtom(xcb_connection_t* connection, const char* name) {
    return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
}

xcb_atom_t atomOf(xcb_connection_t* connection, xcb_intern_atom_cookie_t cookie) {
    auto reply = own(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

// The CARDINAL values of a root window property; empty when it is not set or of another kind.
std::vector<std::uint32_t> cardinals(xcb_connection_t* connection, xcb_get_property_cookie_t cookie) {
    auto reply = own(xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 32 || reply->type != XCB_ATOM_CARDINAL) {
        return {};
    }
    const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return std::vector<std::uint32_t>(values, values + xcb_get_property_value_length(reply.get()) / 4);
}

}  // namespace

X11ScreenSystem::X11ScreenSystem(xcb_connection_t* connection) : connection_(connection) {
    const xcb_setup_t* setup = xcb_get_setup(connection_);
    root_ = xcb_setup_roots_iterator(setup).data->root;
    // The window manager's names for the work area; made here if no window manager ran yet, so
    // that one starting later is understood too.
    const xcb_intern_atom_cookie_t workArea = internAtom(connection_, "_NET_WORKAREA");
    const xcb_intern_atom_cookie_t currentDesktop = internAtom(connection_, "_NET_CURRENT_DESKTOP");
    workAreaAtom_ = atomOf(connection_, workArea);
    currentDesktopAtom_ = atomOf(connection_, currentDesktop);
}

std::optional<ScreenFrame> X11ScreenSystem::readWorkArea(xcb_get_property_cookie_t workArea,
                                                         xcb_get_property_cookie_t currentDesktop) {
    const std::vector<std::uint32_t> desktop = cardinals(connection_, currentDesktop);
    return workAreaOf(cardinals(connection_, workArea), desktop.empty() ? 0 : desktop.front());
}

std::vector<X11ScreenSystem::Monitor> X11ScreenSystem::readMonitors() {
    // Every request goes out before the first reply is awaited, so that a listing costs at most
    // two waits on the server however many monitors there are: it runs at every brightness
    // write. The outputs' details change only with the server's configuration timestamp, so
    // while that stays the same they are taken from the last listing and one wait is enough.
    const char* edidName = "EDID";
    const xcb_intern_atom_cookie_t edidCookie =
        xcb_intern_atom(connection_, 1, static_cast<std::uint16_t>(std::strlen(edidName)), edidName);
    const xcb_randr_get_monitors_cookie_t allCookie = xcb_randr_get_monitors(connection_, root_, 0);
    const xcb_randr_get_monitors_cookie_t activeCookie = xcb_randr_get_monitors(connection_, root_, 1);
    // A window manager announces up to a few dozen desktops, four numbers each.
    const xcb_get_property_cookie_t workAreaCookie =
        xcb_get_property(connection_, 0, root_, workAreaAtom_, XCB_ATOM_CARDINAL, 0, 4 * 64);
    const xcb_get_property_cookie_t desktopCookie =
        xcb_get_property(connection_, 0, root_, currentDesktopAtom_, XCB_ATOM_CARDINAL, 0, 1);
    if (auto edid = own(xcb_intern_atom_reply(connection_, edidCookie, nullptr))) {
        edidAtom_ = edid->atom;
    }
    auto reply = own(xcb_randr_get_monitors_reply(connection_, allCookie, nullptr));
    auto active = own(xcb_randr_get_monitors_reply(connection_, activeCookie, nullptr));
    const std::optional<ScreenFrame> workArea = readWorkArea(workAreaCookie, desktopCookie);
    if (!reply) {
        return {};
    }
    if (reply->timestamp != detailsTimestamp_) {
        outputDetails_.clear();
        detailsTimestamp_ = reply->timestamp;
    }
    std::set<xcb_atom_t> activeNames;
    if (active) {
        for (auto it = xcb_randr_get_monitors_monitors_iterator(active.get()); it.rem > 0;
             xcb_randr_monitor_info_next(&it)) {
            activeNames.insert(it.data->name);
        }
    }

    // An output shown by several monitors cannot stand for any one of them.
    std::map<xcb_randr_output_t, int> outputUse;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(reply.get()); it.rem > 0;
         xcb_randr_monitor_info_next(&it)) {
        const xcb_randr_output_t* outputs = xcb_randr_monitor_info_outputs(it.data);
        for (int index = 0; index < xcb_randr_monitor_info_outputs_length(it.data); ++index) {
            ++outputUse[outputs[index]];
        }
    }

    struct Pending {
        Monitor monitor;
        xcb_atom_t nameAtom = XCB_ATOM_NONE;
        std::optional<xcb_get_atom_name_cookie_t> nameCookie;
        std::optional<xcb_randr_get_output_info_cookie_t> outputCookie;
        std::optional<xcb_randr_get_output_property_cookie_t> edidCookie;
    };
    std::vector<Pending> pending;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(reply.get()); it.rem > 0;
         xcb_randr_monitor_info_next(&it)) {
        const xcb_randr_monitor_info_t* info = it.data;
        Pending next;
        next.nameAtom = info->name;
        next.monitor.screen.frame = {info->x, info->y, info->width, info->height};
        next.monitor.screen.visibleFrame = visiblePart(next.monitor.screen.frame, workArea);
        next.monitor.active = activeNames.count(info->name) != 0;
        // A name atom keeps its text for the life of the server.
        if (atomNames_.count(info->name) == 0) {
            next.nameCookie = xcb_get_atom_name(connection_, info->name);
        }
        const xcb_randr_output_t* outputs = xcb_randr_monitor_info_outputs(info);
        if (xcb_randr_monitor_info_outputs_length(info) >= 1 && outputs[0] != XCB_NONE && outputUse[outputs[0]] == 1) {
            next.monitor.id = outputs[0];
            next.monitor.output.output = outputs[0];
            if (outputDetails_.count(outputs[0]) == 0) {
                next.outputCookie = xcb_randr_get_output_info(connection_, outputs[0], XCB_CURRENT_TIME);
                if (edidAtom_ != XCB_ATOM_NONE) {
                    next.edidCookie = xcb_randr_get_output_property(connection_, outputs[0], edidAtom_,
                                                                    XCB_ATOM_INTEGER, 0, 256, 0, 0);
                }
            }
        } else {
            next.monitor.id = kSyntheticIdBit | (info->name & ~kSyntheticIdBit);
        }
        pending.push_back(std::move(next));
    }

    std::vector<Monitor> monitors;
    for (Pending& next : pending) {
        Monitor& monitor = next.monitor;
        if (next.nameCookie) {
            if (auto name = own(xcb_get_atom_name_reply(connection_, *next.nameCookie, nullptr))) {
                atomNames_[next.nameAtom] = std::string(xcb_get_atom_name_name(name.get()),
                                                        static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get())));
            }
        }
        if (next.outputCookie) {
            OutputDetails details;
            if (auto outputInfo = own(xcb_randr_get_output_info_reply(connection_, *next.outputCookie, nullptr))) {
                details.crtc = outputInfo->crtc;
                details.connector =
                    std::string(reinterpret_cast<const char*>(xcb_randr_get_output_info_name(outputInfo.get())),
                                static_cast<std::size_t>(xcb_randr_get_output_info_name_length(outputInfo.get())));
            }
            if (next.edidCookie) {
                auto edid = own(xcb_randr_get_output_property_reply(connection_, *next.edidCookie, nullptr));
                if (edid && edid->format == 8) {
                    const std::uint8_t* data = xcb_randr_get_output_property_data(edid.get());
                    details.edid.assign(data, data + xcb_randr_get_output_property_data_length(edid.get()));
                }
            }
            outputDetails_[monitor.output.output] = std::move(details);
        }
        if (auto details = outputDetails_.find(monitor.output.output);
            monitor.output.output != 0 && details != outputDetails_.end()) {
            monitor.output.crtc = details->second.crtc;
            monitor.output.name = details->second.connector;
            monitor.active = monitor.active || details->second.crtc != XCB_NONE;
            monitor.identity.connector = details->second.connector;
            monitor.identity.edid = details->second.edid;
        }
        monitor.identity.displayId = monitor.id;
        monitor.screen.number = monitor.id;
        auto atomName = atomNames_.find(next.nameAtom);
        monitor.screen.name = edidMonitorName(monitor.identity.edid)
                                  .value_or(atomName != atomNames_.end() ? atomName->second : std::string());
        monitors.push_back(std::move(monitor));
    }
    return monitors;
}

std::vector<SystemScreen> X11ScreenSystem::screens() {
    if (snapshotDepth_ > 0 && snapshotTaken_) {
        return lastListing_;
    }
    lastListing_.clear();
    lastSeen_.clear();
    for (Monitor& monitor : readMonitors()) {
        lastListing_.push_back(monitor.screen);
        lastSeen_[monitor.id] = std::move(monitor);
    }
    snapshotTaken_ = snapshotDepth_ > 0;
    return lastListing_;
}

void X11ScreenSystem::beginSnapshot() {
    if (snapshotDepth_++ == 0) {
        snapshotTaken_ = false;
    }
}

void X11ScreenSystem::endSnapshot() {
    if (snapshotDepth_ > 0 && --snapshotDepth_ == 0) {
        snapshotTaken_ = false;
    }
}

bool X11ScreenSystem::isActive(std::uint32_t display) {
    auto found = lastSeen_.find(display);
    return found != lastSeen_.end() && found->second.active;
}

std::vector<DisplayIdentity> X11ScreenSystem::identities() {
    std::vector<DisplayIdentity> result;
    for (const Monitor& monitor : readMonitors()) {
        result.push_back(monitor.identity);
    }
    return result;
}

std::optional<X11ScreenSystem::Output> X11ScreenSystem::outputNamed(const std::string& name) {
    for (const Monitor& monitor : readMonitors()) {
        if (monitor.output.output != 0 && monitor.output.name == name) {
            return monitor.output;
        }
    }
    return std::nullopt;
}

X11ScreenSystem::Output X11ScreenSystem::outputOf(std::uint32_t display) {
    if (lastSeen_.count(display) == 0) {
        screens();
    }
    auto found = lastSeen_.find(display);
    return found == lastSeen_.end() ? Output{} : found->second.output;
}

}  // namespace vantle
