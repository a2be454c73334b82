#include <algorithm>
#include <string>
#include <utility>

#include "localization/localization.h"
#include "services/levels.h"
#include "ui/settings_pages.h"
#include "ui/settings_pages_builders.h"

namespace vantle {
namespace {

// A slider from 0 to 100 that acts while it is dragged; the refresh sets its value.
Row slider(Action action, Field field, std::optional<std::uint32_t> display = std::nullopt) {
    return Row{.kind = RowKind::slider, .field = field, .action = action, .displayId = display, .continuous = true};
}

}  // namespace

std::vector<Row> popoverRows(const std::vector<DisplayEntry>& screens) {
    std::vector<Row> rows;
    rows.push_back(row::header(28, "", "Vantle Control", 18));
    if (screens.size() > ControlPlan::limit) {
        Row note = row::literal(L("s079", screens.size()));
        note.key = "s079";
        note.fullWidth = true;
        rows.push_back(std::move(note));
    }
    Row volumeLabel = row::label("s122");
    volumeLabel.field = Field::quickVolumeLabel;
    rows.push_back(row::horizontal({std::move(volumeLabel), row::button("s123", Action::toggleMute, Field::quickMute)}));
    rows.push_back(slider(Action::quickVolumeChanged, Field::quickVolume));
    // Only as many displays as a brightness command can act on get a row, so the popover stays
    // small however many displays are attached.
    const std::size_t shown = std::min(screens.size(), ControlPlan::limit);
    for (std::size_t index = 0; index < shown; ++index) {
        const DisplayEntry& screen = screens[index];
        Row name = row::literal(screen.name);
        name.field = Field::quickDisplayLabel;
        name.displayId = screen.id;
        name.fullWidth = true;
        rows.push_back(std::move(name));
        Row level = slider(Action::setBrightness, Field::quickDisplay, screen.id);
        level.fullWidth = true;
        rows.push_back(std::move(level));
    }
    rows.push_back(row::button("s033", Action::showDock));
    Row bottom = row::horizontal({row::button("s034", Action::showGeneral), row::button("s126", Action::quit)});
    bottom.fillEqually = true;
    rows.push_back(std::move(bottom));
    return rows;
}

}  // namespace vantle
