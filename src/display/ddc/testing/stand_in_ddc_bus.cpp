#include "display/ddc/testing/stand_in_ddc_bus.h"

#include <algorithm>
#include <deque>

namespace vantle::ddc::testing {

struct StandInDdcBus::MonitorRecord {
    StandInMonitor monitor;
    bool attached = true;
    // Found by the last detection, and so listed.
    bool detected = false;
    std::chrono::milliseconds delay{0};
    bool held = false;
    bool failWrites = false;
    bool busy = false;
    std::vector<std::uint16_t> writes;
    int reads = 0;
    int writeAttempts = 0;
    int opens = 0;
    int closes = 0;
};

// Shared with the open handles, which may outlive the bus on a thread that was let go.
struct StandInDdcBus::Inner {
    mutable std::mutex mutex;
    mutable std::condition_variable changed;
    // A deque, so that a monitor attached while a command waits leaves its record where it is.
    std::deque<MonitorRecord> monitors;
    bool everDetected = false;
    bool searchesHeld = false;
    int listings = 0;
    int rescans = 0;
    // Every rescan starts a new one; handles of an earlier one are lost.
    std::uint64_t generation = 0;

    // Waits out a hold, then records what answers now as found.
    std::vector<DdcDisplayInfo> search(bool again) {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return !searchesHeld; });
        if (again || !everDetected) {
            everDetected = true;
            for (MonitorRecord& record : monitors) {
                record.detected = record.attached;
            }
        }
        if (again) {
            ++rescans;
            ++generation;
        } else {
            ++listings;
        }
        changed.notify_all();
        std::vector<DdcDisplayInfo> result;
        for (std::size_t i = 0; i < monitors.size(); ++i) {
            if (monitors[i].detected) {
                result.push_back({i + 100, monitors[i].monitor.edid, monitors[i].monitor.connector});
            }
        }
        return result;
    }

    // Plays one command: marks the monitor busy, waits out its delay and any hold, then runs it.
    template <typename Command>
    auto play(std::size_t index, Command command) {
        std::unique_lock lock(mutex);
        MonitorRecord& record = monitors[index];
        record.busy = true;
        changed.notify_all();
        const auto until = std::chrono::steady_clock::now() + record.delay;
        changed.wait_until(lock, until, [] { return false; });
        changed.wait(lock, [&] { return !record.held; });
        record.busy = false;
        auto result = command(record);
        changed.notify_all();
        return result;
    }
};

namespace {

class StandInHandle final : public DdcMonitorHandle {
public:
    StandInHandle(std::shared_ptr<StandInDdcBus::Inner> inner, std::size_t index, std::uint64_t generation)
        : inner_(std::move(inner)), index_(index), generation_(generation) {}
    ~StandInHandle() override {
        std::lock_guard lock(inner_->mutex);
        ++inner_->monitors[index_].closes;
        inner_->changed.notify_all();
    }
    StandInHandle(const StandInHandle&) = delete;
    StandInHandle& operator=(const StandInHandle&) = delete;

    std::optional<VcpReading> read(std::uint8_t feature) override {
        return inner_->play(index_, [&](StandInDdcBus::MonitorRecord& record) -> std::optional<VcpReading> {
            ++record.reads;
            if (feature != kLuminanceFeature || !answers(record)) {
                return std::nullopt;
            }
            return VcpReading{record.monitor.current, record.monitor.maximum};
        });
    }

    bool write(std::uint8_t feature, std::uint16_t value) override {
        return inner_->play(index_, [&](StandInDdcBus::MonitorRecord& record) {
            ++record.writeAttempts;
            if (record.failWrites || feature != kLuminanceFeature || !answers(record)) {
                return false;
            }
            record.writes.push_back(value);
            record.monitor.current = value;
            return true;
        });
    }

    bool lost() const override {
        std::lock_guard lock(inner_->mutex);
        return inner_->generation != generation_;
    }

private:
    // Called with the bus locked.
    bool answers(const StandInDdcBus::MonitorRecord& record) const {
        return record.attached && inner_->generation == generation_;
    }

    std::shared_ptr<StandInDdcBus::Inner> inner_;
    std::size_t index_;
    std::uint64_t generation_;
};

}  // namespace

StandInDdcBus::StandInDdcBus(std::vector<StandInMonitor> monitors) : inner_(std::make_shared<Inner>()) {
    for (auto& monitor : monitors) {
        MonitorRecord record;
        record.monitor = std::move(monitor);
        inner_->monitors.push_back(std::move(record));
    }
}

std::vector<DdcDisplayInfo> StandInDdcBus::list() {
    return inner_->search(false);
}

std::vector<DdcDisplayInfo> StandInDdcBus::rescan() {
    return inner_->search(true);
}

std::size_t StandInDdcBus::attach(StandInMonitor monitor) {
    std::lock_guard lock(inner_->mutex);
    MonitorRecord record;
    record.monitor = std::move(monitor);
    inner_->monitors.push_back(std::move(record));
    inner_->changed.notify_all();
    return inner_->monitors.size() - 1;
}

void StandInDdcBus::detach(std::size_t monitor) {
    change(monitor, [](MonitorRecord& record) { record.attached = false; });
}

void StandInDdcBus::holdSearches() {
    std::lock_guard lock(inner_->mutex);
    inner_->searchesHeld = true;
}

void StandInDdcBus::releaseSearches() {
    std::lock_guard lock(inner_->mutex);
    inner_->searchesHeld = false;
    inner_->changed.notify_all();
}

int StandInDdcBus::listings() const {
    std::lock_guard lock(inner_->mutex);
    return inner_->listings;
}

int StandInDdcBus::rescans() const {
    std::lock_guard lock(inner_->mutex);
    return inner_->rescans;
}

std::unique_ptr<DdcMonitorHandle> StandInDdcBus::open(std::uint64_t token) {
    std::lock_guard lock(inner_->mutex);
    if (token < 100 || token - 100 >= inner_->monitors.size() || !inner_->monitors[token - 100].attached) {
        return nullptr;
    }
    const std::size_t index = token - 100;
    ++inner_->monitors[index].opens;
    inner_->changed.notify_all();
    return std::make_unique<StandInHandle>(inner_, index, inner_->generation);
}

template <typename Change>
void StandInDdcBus::change(std::size_t monitor, Change edit) {
    std::lock_guard lock(inner_->mutex);
    edit(inner_->monitors[monitor]);
    inner_->changed.notify_all();
}

template <typename Field>
Field StandInDdcBus::field(std::size_t monitor, Field MonitorRecord::*member) const {
    std::lock_guard lock(inner_->mutex);
    return inner_->monitors[monitor].*member;
}

void StandInDdcBus::setDelay(std::size_t monitor, std::chrono::milliseconds delay) {
    change(monitor, [&](MonitorRecord& record) { record.delay = delay; });
}

void StandInDdcBus::setFailWrites(std::size_t monitor, bool fail) {
    change(monitor, [&](MonitorRecord& record) { record.failWrites = fail; });
}

void StandInDdcBus::setCurrent(std::size_t monitor, std::uint16_t current) {
    change(monitor, [&](MonitorRecord& record) { record.monitor.current = current; });
}

void StandInDdcBus::hold(std::size_t monitor) {
    change(monitor, [](MonitorRecord& record) { record.held = true; });
}

void StandInDdcBus::release(std::size_t monitor) {
    change(monitor, [](MonitorRecord& record) { record.held = false; });
}

std::vector<std::uint16_t> StandInDdcBus::writes(std::size_t monitor) const {
    return field(monitor, &MonitorRecord::writes);
}

int StandInDdcBus::reads(std::size_t monitor) const { return field(monitor, &MonitorRecord::reads); }
int StandInDdcBus::writeAttempts(std::size_t monitor) const { return field(monitor, &MonitorRecord::writeAttempts); }
int StandInDdcBus::opens(std::size_t monitor) const { return field(monitor, &MonitorRecord::opens); }
int StandInDdcBus::closes(std::size_t monitor) const { return field(monitor, &MonitorRecord::closes); }
bool StandInDdcBus::busy(std::size_t monitor) const { return field(monitor, &MonitorRecord::busy); }

bool StandInDdcBus::waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) const {
    // The condition reads the bus through its own locked getters, so it is polled against the
    // change notifications rather than evaluated under the lock.
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::unique_lock lock(inner_->mutex);
    for (;;) {
        lock.unlock();
        if (condition()) {
            return true;
        }
        lock.lock();
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        inner_->changed.wait_until(lock, std::min(deadline, std::chrono::steady_clock::now() +
                                                                std::chrono::milliseconds(5)));
    }
}

}  // namespace vantle::ddc::testing
