#include "keys/osd.h"

#include <algorithm>
#include <limits>

namespace vantle {

OSD::~OSD() {
    if (dismiss_) {
        dismiss_->cancel();
    }
    orderOutAll();
}

void OSD::orderOutAll() {
    for (const std::unique_ptr<OsdPanel>& panel : panels_) {
        panel->orderOut();
    }
    panels_.clear();
}

void OSD::show(std::optional<float> volume, bool muted) {
    if (dismiss_) {
        dismiss_->cancel();
    }
    orderOutAll();
    const std::vector<DisplayEntry> listed = brightness_.screens();
    for (const SystemScreen& screen : screens_.screens()) {
        if (!screen.number || *screen.number < 0 || *screen.number > std::numeric_limits<std::uint32_t>::max()) {
            continue;
        }
        const auto display = static_cast<std::uint32_t>(*screen.number);
        if (std::none_of(listed.begin(), listed.end(), [&](const DisplayEntry& entry) { return entry.id == display; })) {
            continue;
        }
        float brightness = 0.0f;
        if (!volume) {
            const std::optional<float> level = brightness_.read(display);
            if (!level) {
                continue;
            }
            brightness = *level;
        }
        const ScreenFrame frame = osdPanelFrame(screen.frame, screen.visibleFrame.value_or(screen.frame));
        if (std::unique_ptr<OsdPanel> panel = factory_.show(frame, osdContent(volume, muted, brightness))) {
            panels_.push_back(std::move(panel));
        }
    }
    std::weak_ptr<OSD*> weak = self_;
    dismiss_ = scheduler_.after(kDismissDelay, [weak] {
        if (std::shared_ptr<OSD*> osd = weak.lock()) {
            (*osd)->orderOutAll();
        }
    });
}

}  // namespace vantle
