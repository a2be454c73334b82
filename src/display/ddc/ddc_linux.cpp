#include "display/ddc/ddc_linux.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "display/ddc/ddc_matching_linux.h"
#include "display/ddc/ddc_sysfs_linux.h"

namespace vantle::ddc {

using Clock = std::chrono::steady_clock;

// What the interface thread and the discovery thread share. The discovery thread looks for the
// monitors of new displays (which takes the library a while on every I2C bus), starts a worker
// per match, and ends the workers of displays that went.
struct DdcBrightness::Shared {
    std::mutex mutex;
    std::condition_variable wake;
    std::condition_variable finishedChanged;
    bool stop = false;
    bool finished = false;
    // Searches asked for; the discovery thread runs one for each increase.
    std::uint64_t requested = 0;
    // Whether the bus was listed once: later searches have to make the library look again.
    bool listedOnce = false;
    std::vector<DisplayIdentity> wanted;
    // The wanted displays a search has looked for already, found or not, so that a display the
    // bus has no monitor for is not searched for again at every change of the screens.
    std::vector<DisplayIdentity> searched;
    std::shared_ptr<DdcBus> bus;
    DdcTimings timings;
    std::map<std::uint32_t, std::shared_ptr<DdcMonitorWorker>> workers;
    // Workers told to stop, for the discovery thread to wait for: their threads may still be in
    // a command to a monitor that went, and nobody on the interface thread waits for that.
    std::vector<std::shared_ptr<DdcMonitorWorker>> retired;
};

DdcBrightness::DdcBrightness()
    : DdcBrightness(Options{[] { return hasI2cBuses(); }, [] { return loadLibddcutilBus(); }, {}}) {}

DdcBrightness::DdcBrightness(Options options)
    : options_(std::move(options)), shared_(std::make_shared<Shared>()) {
    shared_->timings = options_.timings;
}

DdcBrightness::~DdcBrightness() {
    std::vector<std::shared_ptr<DdcMonitorWorker>> workers;
    {
        std::lock_guard lock(shared_->mutex);
        shared_->stop = true;
        shared_->wake.notify_all();
        workers.swap(shared_->retired);
        for (const auto& [id, worker] : shared_->workers) {
            workers.push_back(worker);
        }
        shared_->workers.clear();
    }
    // Every thread is told first and then all are waited for against one deadline, so that
    // several dead monitors together still cost no more than about a second.
    const auto deadline = Clock::now() + std::chrono::seconds(1);
    for (const auto& worker : workers) {
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
    for (const auto& worker : workers) {
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
    std::vector<std::shared_ptr<DdcMonitorWorker>> stopping;
    {
        std::lock_guard lock(shared_->mutex);
        shared_->wanted = needed ? displays : std::vector<DisplayIdentity>{};
        // The monitors driven already are matched to the displays there are now without asking
        // the bus: a display that stays, even under another id, keeps its worker.
        std::vector<DdcDisplayInfo> driven;
        for (const auto& [id, worker] : shared_->workers) {
            driven.push_back(worker->monitor());
        }
        std::map<std::uint32_t, std::shared_ptr<DdcMonitorWorker>> next;
        for (const DdcMatch& match : matchDisplays(shared_->wanted, driven)) {
            for (const auto& [id, worker] : shared_->workers) {
                if (worker->monitor() == match.monitor) {
                    next[match.displayId] = worker;
                }
            }
        }
        for (const auto& [id, worker] : shared_->workers) {
            const bool stays =
                std::any_of(next.begin(), next.end(), [&](const auto& entry) { return entry.second == worker; });
            if (!stays) {
                stopping.push_back(worker);
                shared_->retired.push_back(worker);
            }
        }
        shared_->workers = std::move(next);
        // A display that went and comes back is a new display, and is searched for again.
        std::erase_if(shared_->searched, [&](const DisplayIdentity& display) {
            return std::find(shared_->wanted.begin(), shared_->wanted.end(), display) == shared_->wanted.end();
        });
        requestSearchLocked();
        shared_->wake.notify_all();
    }
    // Told without waiting: a worker ends by itself once its monitor's command returns.
    for (const auto& worker : stopping) {
        worker->requestStop();
    }
}

void DdcBrightness::requestSearchLocked() {
    bool unsearched = false;
    for (const DisplayIdentity& display : shared_->wanted) {
        const bool driven = shared_->workers.count(display.displayId) != 0;
        const bool searched =
            std::find(shared_->searched.begin(), shared_->searched.end(), display) != shared_->searched.end();
        if (!driven && !searched) {
            shared_->searched.push_back(display);
            unsearched = true;
        }
    }
    if (unsearched) {
        ++shared_->requested;
    }
}

void DdcBrightness::searchAgain() {
    if (!discovery_.joinable()) {
        return;
    }
    std::lock_guard lock(shared_->mutex);
    std::erase_if(shared_->searched, [&](const DisplayIdentity& display) {
        return shared_->workers.count(display.displayId) == 0;
    });
    requestSearchLocked();
    shared_->wake.notify_all();
}

void DdcBrightness::reopenAfterSleep() {
    std::lock_guard lock(shared_->mutex);
    for (const auto& [id, worker] : shared_->workers) {
        worker->reopen();
    }
}

void DdcBrightness::discover(std::shared_ptr<Shared> shared) {
    std::uint64_t done = 0;
    for (;;) {
        std::vector<std::shared_ptr<DdcMonitorWorker>> retired;
        bool search = false;
        bool again = false;
        {
            std::unique_lock lock(shared->mutex);
            shared->wake.wait(lock, [&] {
                return shared->stop || shared->requested != done || !shared->retired.empty();
            });
            if (shared->stop) {
                break;
            }
            retired.swap(shared->retired);
            search = shared->requested != done;
            done = shared->requested;
            if (search) {
                again = std::exchange(shared->listedOnce, true);
            }
        }
        const auto deadline = Clock::now() + std::chrono::seconds(1);
        for (const auto& worker : retired) {
            worker->stopBy(deadline);
        }
        retired.clear();
        if (!search) {
            continue;
        }
        // The library found the monitors that were there when it was first asked; one attached
        // since is found only by looking at the buses again.
        const auto monitors = again ? shared->bus->rescan() : shared->bus->list();

        std::lock_guard lock(shared->mutex);
        if (shared->stop) {
            break;
        }
        // Matched against every display, so that twins are told apart as at the start, but
        // only displays without a worker get one: the others keep theirs.
        for (const DdcMatch& match : matchDisplays(shared->wanted, monitors)) {
            const bool taken = shared->workers.count(match.displayId) != 0 ||
                               std::any_of(shared->workers.begin(), shared->workers.end(), [&](const auto& entry) {
                                   return entry.second->monitor().token == match.monitor.token;
                               });
            if (!taken) {
                shared->workers[match.displayId] =
                    std::make_shared<DdcMonitorWorker>(shared->bus, match.monitor, shared->timings);
            }
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
