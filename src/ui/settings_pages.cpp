#include "ui/settings_pages.h"

#include <string>
#include <utility>

#include "localization/localization.h"
#include "ui/settings_pages_builders.h"

namespace vantle {
namespace {

// "auto" first, then every language in its own name; the stored choice is selected, and with
// none stored (or one no longer offered) the automatic item is.
Row languagePopUp(const std::optional<std::string>& preference) {
    Row popUp{.kind = RowKind::languagePopUp, .action = Action::changeLanguage};
    popUp.items.push_back({L("s135"), "auto"});
    for (std::string_view code : Localization::supported) {
        popUp.items.push_back({Localization::languageNames.at(std::string(code)), std::string(code)});
    }
    const std::string wanted = preference.value_or("auto");
    for (std::size_t index = 0; index < popUp.items.size(); ++index) {
        if (popUp.items[index].value == wanted) {
            popUp.selected = static_cast<int>(index);
        }
    }
    return popUp;
}

Row checkBox(Field field, Action action, bool on) {
    Row box = row::existing(field, action);
    box.checked = on;
    return box;
}

std::vector<Row> generalPage(const PageInputs& inputs) {
    return {
        row::section("s134"),
        languagePopUp(inputs.languagePreference),
        row::label("s136"),
        row::section("s143"),
        row::existing(Field::loginToggle, Action::changeLogin),
        row::existing(Field::loginStatus),
        row::button("s050", Action::openLoginSettings, Field::loginSettingsButton),
        row::section("s051"),
        row::label("s052"),
        checkBox(Field::linked, Action::saveLinked, inputs.linked),
        row::label("s053"),
        row::section("s139"),
        row::label("s140"),
        row::button("s141", Action::openDisplaySettings),
        row::section("s054"),
        row::label("s055"),
        row::existing(Field::keyboardState),
        row::horizontal({row::button("s056", Action::enableKeys, Field::keyboardButton),
                         row::button("s057", Action::repairKeyboardPermission)},
                        8),
        row::section("s058"),
        row::existing(Field::audioWarning),
        row::button("s059", Action::openMIDI),
        checkBox(Field::softwareToggle, Action::softwareChanged, inputs.softwareBrightness),
        row::label("s060"),
        row::label("s061"),
    };
}

// A Dock button: small type that wraps, so that long translations fit three to a row.
Row dockButton(std::string_view key, Action action, bool enabled) {
    Row button = row::button(key, action);
    button.fontSize = 12;
    button.wrapping = true;
    button.height = 42;
    button.enabled = enabled;
    return button;
}

std::vector<Row> dockPage(bool dockAvailable) {
    Row buttons = row::horizontal({dockButton("s064", Action::smallSpacer, dockAvailable),
                                   dockButton("s065", Action::bigSpacer, dockAvailable),
                                   dockButton("s066", Action::addSeparator, dockAvailable)});
    buttons.fillEqually = true;
    buttons.spacingAfter = 24;
    std::vector<Row> rows;
    if (!dockAvailable) {
        rows.push_back(row::label("s038"));
    }
    for (Row& each : std::vector<Row>{row::section("s062"), row::label("s063"), std::move(buttons),
                                      row::label("s067"), row::label("s068")}) {
        rows.push_back(std::move(each));
    }
    return rows;
}

std::vector<Row> aboutPage(const PageInputs& inputs) {
    Row version = row::literal(L("s128", inputs.releaseVersion, Localization::releaseDate(inputs.releaseDate)));
    version.key = "s128";
    Row logo{.kind = RowKind::logo, .text = std::string(Maker::company), .height = 43, .width = 240};
    return {
        row::literal("Vantle Control", 24, true),
        std::move(version),
        row::withSpacingAfter(row::label("s069"), 26),
        row::horizontal({std::move(logo), row::flexibleSpace()}),
        row::literal(std::string(Maker::company) + kDotSeparator + std::string(Maker::author), 16, true),
        row::label("s070"),
        row::literalButton(std::string(Maker::email), Action::openEmail),
        row::literalButton(std::string(Maker::websiteTitle), Action::openWebsite),
        row::button("s071", Action::showLicense),
    };
}

std::vector<Row> updatesPage(const PageInputs& inputs) {
    Row version = row::literal(L("s073", inputs.releaseVersion));
    version.key = "s073";
    return {
        row::label("s072", 22, true),
        std::move(version),
        row::withSpacingAfter(row::label("s074"), 28),
        row::existing(Field::automaticUpdates, Action::changeAutomaticUpdates),
        row::button("s075", Action::checkUpdates, Field::updateButton),
        row::withSpacingAfter(row::existing(Field::updateMessage), 28),
        row::label("s076"),
    };
}

}  // namespace

std::vector<Row> settingsHeaderRows(int page) {
    Row selector{.kind = RowKind::pageSelector, .action = Action::changeSettingsPage, .fullWidth = true};
    // The Dock is a proper name and stays the same word in every language.
    selector.segments = {L("s047"), "Dock", L("s048"), L("s049")};
    selector.selected = page;
    return {row::header(34, "s046", L("s046"), 27), std::move(selector)};
}

std::vector<Row> settingsPageRows(int page, const PageInputs& inputs) {
    switch (page) {
        case kGeneralPage:
            return row::fullWidth(generalPage(inputs));
        case kDockPage:
            return row::fullWidth(dockPage(inputs.dockAvailable));
        case kAboutPage:
            return row::fullWidth(aboutPage(inputs));
        case kUpdatesPage:
            return row::fullWidth(updatesPage(inputs));
        default:
            return {};
    }
}

std::vector<Row> settingsWindowRows(int page, const PageInputs& inputs) {
    std::vector<Row> rows = settingsHeaderRows(page);
    for (Row& each : settingsPageRows(page, inputs)) {
        rows.push_back(std::move(each));
    }
    // The message line ends every page, empty and hidden until a command reports something.
    Row message = row::existing(Field::message);
    message.fullWidth = true;
    message.hidden = true;
    message.colour = TextColour::secondaryLabel;
    rows.push_back(std::move(message));
    return rows;
}

}  // namespace vantle
