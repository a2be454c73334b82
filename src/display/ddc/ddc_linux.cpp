#include "display/ddc/ddc_linux.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <mutex>

#include "display/ddc/ddc_matching_linux.h"
#include "display/ddc/ddc_sysfs_linux.h"

namespace vantle::ddc {

using Clock = std::chrono::steady_clock;

// What the interface thread and the discovery thread share. The discovery thread finds the
// monitors (which takes the library a while on every I2C bus) and starts a worker per match.
struct DdcBrightness::Shared {
    std::mutex mutex;
    std::condition_variable wake;
    std::condition_variable finishedChanged;
    bool stop = false;
    bool finished = false;
    std::uint64_t requested = 0;
    std::vector<DisplayIdentity> wanted;
    std::shared_ptr<DdcBus> bus;
    DdcTimings timings;
    std::map<std::uint32_t, std::shared_ptr<DdcMonitorWorker>> workers;
};

DdcBrightness::DdcBrightness()
    : DdcBrightness(Options{[] { return hasI2cBuses(); }, [] { return loadLibddcutilBus(); }, {}}) {}

DdcBrightness::DdcBrightness(Options options)
    : options_(std::move(options)), shared_(std::make_shared<Shared>()) {
    shared_->timings = options_.timings;
}

DdcBrightness::~DdcBrightness() {
    std::map<std::uint32_t, std::shared_ptr<DdcMonitorWorker>> workers;
    {
        std::lock_guard lock(shared_->mutex);
        shared_->stop = true;
        shared_->wake.notify_all();
        workers.swap(shared_->workers);
    }
    // Every thread is told first and then all are waited for against one deadline, so that
    // several dead monitors together still cost no more than about a second.
    const auto deadline = Clock::now() + std::chrono::seconds(1);
    for (const auto& [id, worker] : workers) {
        worker->requestStop();
    }
    if (discovery_.joinable()) {
        bool finished = false;
        {
            std::unique_lock lock(shared_->mutex);
            finished = shared_->finishedChanged.wait_until(lock, deadline, [&] { return shared_->finished; });
        }
        if (finished) {
            discovery_.join();
        } else {
            // Still inside the library's detection; it owns what it uses and ends by itself.
            discovery_.detach();
        }
    }
    for (const auto& [id, worker] : workers) {
        worker->stopBy(deadline);
    }
}

void DdcBrightness::updateDisplays(const std::vector<DisplayIdentity>& displays) {
    const bool needed = !displays.empty() && options_.hasI2cBuses && options_.hasI2cBuses();
    if (needed && !loadTried_) {
        loadTried_ = true;
        auto bus = options_.loadBus ? options_.loadBus() : nullptr;
        if (bus) {
            {
                std::lock_guard lock(shared_->mutex);
                shared_->bus = std::move(bus);
            }
            discovery_ = std::thread(&DdcBrightness::discover, shared_);
        }
    }
    if (!discovery_.joinable()) {
        // Nothing was ever loaded, so nothing is controlled and there is nothing to forget.
        return;
    }
    std::lock_guard lock(shared_->mutex);
    shared_->wanted = needed ? displays : std::vector<DisplayIdentity>{};
    ++shared_->requested;
    shared_->wake.notify_all();
}

void DdcBrightness::discover(std::shared_ptr<Shared> shared) {
    std::uint64_t done = 0;
    for (;;) {
        std::uint64_t generation = 0;
        std::vector<DisplayIdentity> wanted;
        {
            std::unique_lock lock(shared->mutex);
            shared->wake.wait(lock, [&] { return shared->stop || shared->requested != done; });
            if (shared->stop) {
                break;
            }
            generation = shared->requested;
            wanted = shared->wanted;
        }
        const auto monitors = wanted.empty() ? std::vector<DdcDisplayInfo>{} : shared->bus->list();
        const auto matches = matchDisplays(wanted, monitors);

        std::vector<std::shared_ptr<DdcMonitorWorker>> retired;
        {
            std::lock_guard lock(shared->mutex);
            if (shared->stop) {
                break;
            }
            if (generation != shared->requested) {
                continue;  // The displays changed again meanwhile; match the newer ones.
            }
            // A monitor that stays keeps its worker, and with it its open handle and its level.
            std::map<std::uint32_t, std::shared_ptr<DdcMonitorWorker>> next;
            for (const DdcMatch& match : matches) {
                const auto kept = std::find_if(shared->workers.begin(), shared->workers.end(),
                                               [&](const auto& entry) { return entry.second->monitor() == match.monitor; });
                next[match.displayId] = kept != shared->workers.end()
                                            ? kept->second
                                            : std::make_shared<DdcMonitorWorker>(shared->bus, match.monitor,
                                                                                 shared->timings);
            }
            for (const auto& [id, worker] : shared->workers) {
                const bool stays = std::any_of(next.begin(), next.end(),
                                               [&](const auto& entry) { return entry.second == worker; });
                if (!stays) {
                    retired.push_back(worker);
                }
            }
            shared->workers = std::move(next);
            done = generation;
        }
        for (const auto& worker : retired) {
            worker->requestStop();
        }
        const auto deadline = Clock::now() + std::chrono::seconds(1);
        for (const auto& worker : retired) {
            worker->stopBy(deadline);
        }
    }
    std::lock_guard lock(shared->mutex);
    shared->finished = true;
    shared->finishedChanged.notify_all();
}

std::shared_ptr<DdcMonitorWorker> DdcBrightness::workerFor(std::uint32_t displayId) const {
    std::lock_guard lock(shared_->mutex);
    const auto found = shared_->workers.find(displayId);
    return found == shared_->workers.end() ? nullptr : found->second;
}

std::optional<float> DdcBrightness::get(std::uint32_t displayId) {
    const auto worker = workerFor(displayId);
    return worker ? worker->level() : std::nullopt;
}

bool DdcBrightness::set(std::uint32_t displayId, float level) {
    const auto worker = workerFor(displayId);
    if (!worker || !std::isfinite(level)) {
        return false;
    }
    // The write is only queued here; see the header for how its outcome becomes known.
    worker->write(std::clamp(level, 0.0f, 1.0f));
    return true;
}

void DdcBrightness::refresh() {
    std::lock_guard lock(shared_->mutex);
    for (const auto& [id, worker] : shared_->workers) {
        worker->refresh();
    }
}

}  // namespace vantle::ddc
