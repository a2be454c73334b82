#include "audio/pulse/pulse_connection.h"

#include <pulse/context.h>
#include <pulse/mainloop.h>
#include <pulse/operation.h>
#include <pulse/subscribe.h>

#include <algorithm>
#include <memory>
#include <utility>


namespace vantle::pulse {
namespace {

// A list read afresh is kept for the readings after it; a list not read is the one kept.
template <typename List>
void keepOrReuse(bool readNow, std::optional<List>& kept, List& inSnapshot) {
    if (readNow) {
        kept = inSnapshot;
    } else {
        inSnapshot = *kept;
    }
}

// After a connection attempt that ran out of time, requests fail at once for this long rather
// than wait on a stuck server again at every call. An attempt refused at once (no server is
// listening) costs nothing, so it is tried again at the next call: a restarted server is then
// used by the very next command.
constexpr std::chrono::milliseconds kReconnectPause{250};

// The server's report of a change: a source or a module came, went or changed, and that list is
// read again by the next reading.
void noteChange(pa_context*, pa_subscription_event_type_t type, std::uint32_t, void* connection) {
    auto* stale = static_cast<PulseConnection::StaleLists*>(connection);
    switch (type & PA_SUBSCRIPTION_EVENT_FACILITY_MASK) {
        case PA_SUBSCRIPTION_EVENT_SOURCE:
            stale->sources = true;
            break;
        case PA_SUBSCRIPTION_EVENT_MODULE:
            stale->modules = true;
            break;
        default:
            break;
    }
}

}  // namespace

PulseConnection::PulseConnection(std::optional<std::string> server, std::chrono::milliseconds timeout)
    : server_(std::move(server)), timeout_(timeout), mainLoop_(pa_mainloop_new()) {}

PulseConnection::~PulseConnection() {
    disconnect();
    if (mainLoop_ != nullptr) {
        pa_mainloop_free(mainLoop_);
    }
}

std::optional<PulseSnapshot> PulseConnection::fetchSnapshot(Clock::time_point deadline) {
    return exchange({}, ReadingExtent::whole, deadline).reading;
}

std::optional<PulseSnapshot> PulseConnection::fetchDefaultSink(Clock::time_point deadline) {
    return exchange({}, ReadingExtent::defaultSink, deadline).reading;
}

std::vector<bool> PulseConnection::setSinkVolumes(const std::vector<SinkVolume>& volumes, Clock::time_point deadline) {
    return exchange(volumes, std::nullopt, deadline).confirmed;
}

PulseConnection::Exchange PulseConnection::exchange(const std::vector<SinkVolume>& volumes,
                                                    std::optional<ReadingExtent> reading, Clock::time_point deadline) {
    Exchange outcome{std::vector<bool>(volumes.size(), false), std::nullopt};
    if ((volumes.empty() && !reading) || !ensureConnected(deadline)) {
        return outcome;
    }
    ++roundTrips_;
    bool withSources = false;
    bool withModules = false;
    if (reading) {
        withSources = *reading == ReadingExtent::whole && (stale_.sources || !sources_);
        withModules = stale_.modules || !combiningModules_;
        // Cleared before asking: a change reported while the answer is on its way marks the
        // list for the next reading again.
        stale_.sources = stale_.sources && !withSources;
        stale_.modules = stale_.modules && !withModules;
    }
    bool abandoned = false;
    {
        // The requests keep their own address for the server's answers, so they are not moved.
        // The writes go first: the server carries them out before it starts on the reading.
        std::vector<std::unique_ptr<VolumeRequest>> writes;
        writes.reserve(volumes.size());
        for (const SinkVolume& volume : volumes) {
            writes.push_back(std::make_unique<VolumeRequest>(context_, volume.sinkIndex, volume.channelVolumes));
        }
        std::optional<SnapshotRequest> request;
        if (reading) {
            request.emplace(context_, *reading, withSources, withModules);
        }
        const auto allAnswered = [&] {
            return std::all_of(writes.begin(), writes.end(),
                               [](const std::unique_ptr<VolumeRequest>& write) {
                                   return !write->sent() || write->finished();
                               }) &&
                   (!request || !request->sent() || request->finished());
        };
        abandoned = !runUntil(allAnswered, deadline);
        if (!abandoned) {
            for (std::size_t index = 0; index < writes.size(); ++index) {
                outcome.confirmed[index] = writes[index]->sent() && writes[index]->succeeded();
            }
            if (request && request->sent()) {
                outcome.reading = request->result();
            }
        }
    }
    if (reading) {
        if (!outcome.reading) {
            stale_ = StaleLists{true, true};
        } else {
            if (*reading == ReadingExtent::whole) {
                keepOrReuse(withSources, sources_, outcome.reading->sources);
            }
            keepOrReuse(withModules, combiningModules_, outcome.reading->combiningModules);
        }
    }
    if (abandoned) {
        // A server that missed the deadline may still answer later; a fresh connection keeps
        // those late answers from being taken for the next request's.
        disconnect();
    }
    return outcome;
}

bool PulseConnection::ensureConnected(Clock::time_point deadline) {
    if (mainLoop_ == nullptr) {
        return false;
    }
    if (context_ != nullptr) {
        // Take in whatever happened since the last request without waiting, so that a server
        // that went away in between is noticed now and the request goes to its successor.
        pa_mainloop_iterate(mainLoop_, 0, nullptr);
        if (pa_context_get_state(context_) == PA_CONTEXT_READY) {
            return true;
        }
        disconnect();
    }
    if (lastFailedAttempt_ && Clock::now() - *lastFailedAttempt_ < kReconnectPause) {
        return false;
    }
    context_ = pa_context_new(pa_mainloop_get_api(mainLoop_), "Vantle Control");
    const bool connected =
        context_ != nullptr &&
        pa_context_connect(context_, server_ ? server_->c_str() : nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0 &&
        runUntil([&] { return pa_context_get_state(context_) == PA_CONTEXT_READY; }, deadline);
    if (!connected) {
        disconnect();
        if (Clock::now() >= deadline) {
            lastFailedAttempt_ = Clock::now();
        }
        return false;
    }
    lastFailedAttempt_.reset();
    // Sent without waiting for its answer: the first reading asks for both lists anyway.
    pa_context_set_subscribe_callback(context_, &noteChange, &stale_);
    const auto watched = static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SOURCE | PA_SUBSCRIPTION_MASK_MODULE);
    if (pa_operation* subscription = pa_context_subscribe(context_, watched, nullptr, nullptr)) {
        pa_operation_unref(subscription);
    }
    return true;
}



void PulseConnection::disconnect() {
    if (context_ == nullptr) {
        return;
    }
    pa_context_set_subscribe_callback(context_, nullptr, nullptr);
    pa_context_disconnect(context_);
    pa_context_unref(context_);
    context_ = nullptr;
    sources_.reset();
    combiningModules_.reset();
    stale_ = StaleLists{true, true};
}

bool PulseConnection::runUntil(const std::function<bool()>& done, Clock::time_point deadline) {
    while (!done()) {
        if (context_ == nullptr || !PA_CONTEXT_IS_GOOD(pa_context_get_state(context_))) {
            return false;
        }
        const auto remaining = std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now());
        if (remaining.count() <= 0) {
            return false;
        }
        // Waiting in poll with the remaining time as its limit is what bounds every request.
        if (pa_mainloop_prepare(mainLoop_, static_cast<int>(remaining.count())) < 0 ||
            pa_mainloop_poll(mainLoop_) < 0 || pa_mainloop_dispatch(mainLoop_) < 0) {
            return false;
        }
    }
    return true;
}

}  // namespace vantle::pulse
