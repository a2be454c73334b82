#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "display/brightness.h"
#include "keys/osd_panel.h"
#include "services/scheduler.h"

namespace vantle {

// The overlay that confirms a volume or brightness change: a fresh panel on each screen the
// brightness backend lists, removed 1.4 s after the last call. Main thread only.
class OSD {
public:
    static constexpr std::chrono::milliseconds kDismissDelay{1400};

    OSD(ScreenSystem& screens, Brightness& brightness, OsdPanelFactory& factory, Scheduler& scheduler)
        : screens_(screens), brightness_(brightness), factory_(factory), scheduler_(scheduler) {}
    ~OSD();

    // With a volume, the volume variant on every listed screen; without one, each screen shows
    // its own brightness and screens whose brightness cannot be read are left out.
    void show(std::optional<float> volume, bool muted);

    const std::vector<std::unique_ptr<OsdPanel>>& panels() const { return panels_; }

private:
    void orderOutAll();

    ScreenSystem& screens_;
    Brightness& brightness_;
    OsdPanelFactory& factory_;
    Scheduler& scheduler_;
    std::vector<std::unique_ptr<OsdPanel>> panels_;
    std::shared_ptr<ScheduledCall> dismiss_;
    // The dismissal holds this weakly: it does nothing once the OSD is gone.
    std::shared_ptr<OSD*> self_ = std::make_shared<OSD*>(this);
};

}  // namespace vantle
