#include "display/screens_x11.h"

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>
#include <string>

#include "display/edid.h"

namespace vantle {
namespace {

template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply>
ReplyPtr<Reply> own(Reply* reply) {
    return ReplyPtr<Reply>(reply, &std::free);
}

constexpr std::uint32_t kSyntheticIdBit = 0x80000000u;

std::string atomName(xcb_connection_t* connection, xcb_atom_t atom) {
    auto reply = own(xcb_get_atom_name_reply(connection, xcb_get_atom_name(connection, atom), nullptr));
    if (!reply) {
        return {};
    }
    return std::string(xcb_get_atom_name_name(reply.get()),
                       static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())));
}

xcb_atom_t internAtom(xcb_connection_t* connection, const char* name, bool onlyIfExists) {
    auto reply = own(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, onlyIfExists ? 1 : 0, static_cast<std::uint16_t>(std::strlen(name)), name),
        nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::vector<std::uint8_t> outputEdid(xcb_connection_t* connection, xcb_randr_output_t output, xcb_atom_t edidAtom) {
    if (edidAtom == XCB_ATOM_NONE) {
        return {};
    }
    auto reply = own(xcb_randr_get_output_property_reply(
        connection,
        xcb_randr_get_output_property(connection, output, edidAtom, XCB_ATOM_INTEGER, 0, 256, 0, 0), nullptr));
    if (!reply || reply->format != 8) {
        return {};
    }
    const std::uint8_t* data = xcb_randr_get_output_property_data(reply.get());
    return std::vector<std::uint8_t>(data, data + xcb_randr_get_output_property_data_length(reply.get()));
}

}  // namespace

X11ScreenSystem::X11ScreenSystem(xcb_connection_t* connection) : connection_(connection) {
    const xcb_setup_t* setup = xcb_get_setup(connection_);
    root_ = xcb_setup_roots_iterator(setup).data->root;
    edidAtom_ = internAtom(connection_, "EDID", true);
}

std::vector<X11ScreenSystem::Monitor> X11ScreenSystem::readMonitors() {
    auto reply = own(xcb_randr_get_monitors_reply(connection_, xcb_randr_get_monitors(connection_, root_, 0), nullptr));
    if (!reply) {
        return {};
    }
    auto active = own(xcb_randr_get_monitors_reply(connection_, xcb_randr_get_monitors(connection_, root_, 1), nullptr));
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

    std::vector<Monitor> monitors;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(reply.get()); it.rem > 0;
         xcb_randr_monitor_info_next(&it)) {
        const xcb_randr_monitor_info_t* info = it.data;
        Monitor monitor;
        const std::string monitorName = atomName(connection_, info->name);
        monitor.screen.frame = {info->x, info->y, info->width, info->height};
        monitor.active = activeNames.count(info->name) != 0;
        const xcb_randr_output_t* outputs = xcb_randr_monitor_info_outputs(info);
        const bool ownOutput =
            xcb_randr_monitor_info_outputs_length(info) >= 1 && outputs[0] != XCB_NONE && outputUse[outputs[0]] == 1;
        if (ownOutput) {
            monitor.id = outputs[0];
            monitor.output.output = outputs[0];
            auto outputInfo = own(xcb_randr_get_output_info_reply(
                connection_, xcb_randr_get_output_info(connection_, outputs[0], XCB_CURRENT_TIME), nullptr));
            if (outputInfo) {
                monitor.output.crtc = outputInfo->crtc;
                monitor.active = monitor.active || outputInfo->crtc != XCB_NONE;
                monitor.identity.connector =
                    std::string(reinterpret_cast<const char*>(xcb_randr_get_output_info_name(outputInfo.get())),
                                static_cast<std::size_t>(xcb_randr_get_output_info_name_length(outputInfo.get())));
                monitor.output.name = monitor.identity.connector;
            }
            monitor.identity.edid = outputEdid(connection_, outputs[0], edidAtom_);
        } else {
            monitor.id = kSyntheticIdBit | (info->name & ~kSyntheticIdBit);
        }
        monitor.identity.displayId = monitor.id;
        monitor.screen.number = monitor.id;
        monitor.screen.name = edidMonitorName(monitor.identity.edid).value_or(monitorName);
        monitors.push_back(std::move(monitor));
    }
    return monitors;
}

std::vector<SystemScreen> X11ScreenSystem::screens() {
    std::vector<SystemScreen> result;
    lastSeen_.clear();
    for (Monitor& monitor : readMonitors()) {
        result.push_back(monitor.screen);
        lastSeen_[monitor.id] = std::move(monitor);
    }
    return result;
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
