#include "ui/settings_pages.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "localization/localization.h"

namespace vantle {
namespace {

// What a row is, in one short word, so that a whole page can be compared at once: the key or
// literal text of a text row, the field of a placed control, and the parts of a row of views.
std::string describeRow(const Row& row) {
    const std::string name = row.key.empty() ? row.text : row.key;
    switch (row.kind) {
        case RowKind::horizontal: {
            std::string parts = "row(";
            for (const Row& child : row.children) {
                parts += (parts.size() > 4 ? "," : "") + describeRow(child);
            }
            return parts + ")";
        }
        case RowKind::brandMark: return "brand";
        case RowKind::helpButton: return "help";
        case RowKind::flexibleSpace: return "space";
        case RowKind::pageSelector: return "pages";
        case RowKind::section: return "section " + name;
        case RowKind::label: return "label " + name;
        case RowKind::button: return "button " + name;
        case RowKind::slider: return "slider";
        case RowKind::existing: return "control";
        case RowKind::languagePopUp: return "languages";
        case RowKind::logo: return "logo";
    }
    return "?";
}

std::vector<std::string> describeRows(const std::vector<Row>& rows) {
    std::vector<std::string> result;
    for (const Row& row : rows) {
        result.push_back(describeRow(row));
    }
    return result;
}

std::vector<Field> fields(const std::vector<Row>& rows) {
    std::vector<Field> result;
    for (const Row& row : rows) {
        if (row.kind == RowKind::existing) {
            result.push_back(row.field);
        }
    }
    return result;
}

const PageInputs kInputs{std::nullopt, true, false, "2.4", "22/11/2026", true};

TEST(SettingsPagesTest, GeneralPageRowsInOrder) {
    const std::vector<Row> rows = settingsPageRows(kGeneralPage, kInputs);
    EXPECT_EQ(describeRows(rows),
              (std::vector<std::string>{
                  "section s134", "languages", "label s136", "section s143", "control", "control", "button s050",
                  "section s051", "label s052", "control", "label s053", "section s139", "label s140", "button s141",
                  "section s054", "label s055", "control", "row(button s056,button s057)", "section s058", "control",
                  "button s059", "control", "label s060", "label s061"}));
    EXPECT_EQ(fields(rows), (std::vector<Field>{Field::loginToggle, Field::loginStatus, Field::linked,
                                                Field::keyboardState, Field::audioWarning, Field::softwareToggle}));
    for (const Row& row : rows) {
        EXPECT_TRUE(row.fullWidth) << describeRow(row);
        EXPECT_FALSE(row.spacingAfter.has_value()) << describeRow(row);
    }
}

TEST(SettingsPagesTest, GeneralPageTextsAndActions) {
    const std::vector<Row> rows = settingsPageRows(kGeneralPage, kInputs);
    EXPECT_EQ(rows[0].text, L("s134"));
    EXPECT_EQ(rows[0].fontSize, 17);
    EXPECT_TRUE(rows[0].bold);
    EXPECT_EQ(rows[2].text, L("s136"));
    EXPECT_EQ(rows[2].fontSize, 13);
    EXPECT_FALSE(rows[2].bold);
    EXPECT_EQ(rows[4].action, Action::changeLogin);
    EXPECT_EQ(rows[6].action, Action::openLoginSettings);
    EXPECT_EQ(rows[6].field, Field::loginSettingsButton);
    EXPECT_EQ(rows[6].text, L("s050"));
    EXPECT_EQ(rows[9].action, Action::saveLinked);
    EXPECT_EQ(rows[13].action, Action::openDisplaySettings);
    const Row& keys = rows[17];
    EXPECT_EQ(keys.spacing, 8);
    EXPECT_FALSE(keys.fillEqually);
    EXPECT_EQ(keys.children[0].action, Action::enableKeys);
    EXPECT_EQ(keys.children[0].field, Field::keyboardButton);
    EXPECT_EQ(keys.children[1].action, Action::repairKeyboardPermission);
    EXPECT_EQ(keys.children[1].field, Field::none);
    EXPECT_EQ(rows[20].action, Action::openMIDI);
    EXPECT_EQ(rows[21].action, Action::softwareChanged);
}

TEST(SettingsPagesTest, CheckBoxesTakeTheirStoredStates) {
    PageInputs inputs = kInputs;
    std::vector<Row> rows = settingsPageRows(kGeneralPage, inputs);
    EXPECT_EQ(rows[9].checked, true);
    EXPECT_EQ(rows[21].checked, false);
    inputs.linked = false;
    inputs.softwareBrightness = true;
    rows = settingsPageRows(kGeneralPage, inputs);
    EXPECT_EQ(rows[9].checked, false);
    EXPECT_EQ(rows[21].checked, true);
    EXPECT_FALSE(rows[4].checked.has_value());  // the login toggle is the refresh's to set
}

TEST(SettingsPagesTest, LanguageMenuOffersAutomaticThenEveryLanguageInItsOwnName) {
    const Row popUp = settingsPageRows(kGeneralPage, kInputs)[1];
    EXPECT_EQ(popUp.action, Action::changeLanguage);
    ASSERT_EQ(popUp.items.size(), 9u);
    EXPECT_EQ(popUp.items[0], (MenuItem{L("s135"), "auto"}));
    for (std::size_t index = 0; index < Localization::supported.size(); ++index) {
        const std::string code(Localization::supported[index]);
        EXPECT_EQ(popUp.items[index + 1], (MenuItem{Localization::languageNames.at(code), code}));
    }
}

TEST(SettingsPagesTest, WithNoStoredLanguageTheAutomaticItemIsSelected) {
    EXPECT_EQ(settingsPageRows(kGeneralPage, kInputs)[1].selected, 0);
}

TEST(SettingsPagesTest, StoredLanguageIsSelected) {
    PageInputs inputs = kInputs;
    inputs.languagePreference = "nl";
    EXPECT_EQ(settingsPageRows(kGeneralPage, inputs)[1].selected, 3);
    inputs.languagePreference = "ru";
    EXPECT_EQ(settingsPageRows(kGeneralPage, inputs)[1].selected, 8);
    inputs.languagePreference = "auto";
    EXPECT_EQ(settingsPageRows(kGeneralPage, inputs)[1].selected, 0);
    inputs.languagePreference = "xx";
    EXPECT_EQ(settingsPageRows(kGeneralPage, inputs)[1].selected, 0);
}

TEST(SettingsPagesTest, DockPageRowsInOrder) {
    const std::vector<Row> rows = settingsPageRows(kDockPage, kInputs);
    EXPECT_EQ(describeRows(rows),
              (std::vector<std::string>{"section s062", "label s063", "row(button s064,button s065,button s066)",
                                        "label s067", "label s068"}));
    const Row& buttons = rows[2];
    EXPECT_EQ(buttons.spacing, 12);
    EXPECT_TRUE(buttons.fillEqually);
    EXPECT_EQ(buttons.spacingAfter, 24.0);
    const Action actions[] = {Action::smallSpacer, Action::bigSpacer, Action::addSeparator};
    for (std::size_t index = 0; index < 3; ++index) {
        const Row& button = buttons.children[index];
        EXPECT_EQ(button.action, actions[index]);
        EXPECT_EQ(button.fontSize, 12);
        EXPECT_TRUE(button.wrapping);
        EXPECT_EQ(button.height, 42.0);
        EXPECT_TRUE(button.enabled);
    }
}

TEST(SettingsPagesTest, WithoutADockThePageSaysSoFirstAndItsButtonsAreDisabled) {
    PageInputs inputs = kInputs;
    inputs.dockAvailable = false;
    const std::vector<Row> rows = settingsPageRows(kDockPage, inputs);
    EXPECT_EQ(describeRows(rows),
              (std::vector<std::string>{"label s038", "section s062", "label s063",
                                        "row(button s064,button s065,button s066)", "label s067", "label s068"}));
    EXPECT_EQ(rows[0].text, L("s038"));
    for (const Row& button : rows[3].children) {
        EXPECT_FALSE(button.enabled);
    }
}

TEST(SettingsPagesTest, AboutPageRowsInOrder) {
    const std::vector<Row> rows = settingsPageRows(kAboutPage, kInputs);
    EXPECT_EQ(describeRows(rows),
              (std::vector<std::string>{"label Vantle Control", "label s128", "label s069", "row(logo,space)",
                                        "label Orlend \u00B7 Mira Halvorsen", "label s070",
                                        "button support@orlend.example", "button orlend.example/vantle-control",
                                        "button s071"}));
    EXPECT_EQ(rows[0].fontSize, 24);
    EXPECT_TRUE(rows[0].bold);
    EXPECT_EQ(rows[1].text, L("s128", "2.4", Localization::releaseDate("22/11/2026")));
    EXPECT_EQ(rows[2].spacingAfter, 26.0);
    EXPECT_EQ(rows[3].spacing, 12);
    const Row& logo = rows[3].children[0];
    EXPECT_EQ(logo.width, 240);
    EXPECT_EQ(logo.height, 43.0);
    EXPECT_EQ(logo.text, "Orlend");
    EXPECT_EQ(rows[4].fontSize, 16);
    EXPECT_TRUE(rows[4].bold);
    EXPECT_EQ(rows[6].action, Action::openEmail);
    EXPECT_EQ(rows[7].action, Action::openWebsite);
    EXPECT_EQ(rows[8].action, Action::showLicense);
    EXPECT_EQ(rows[8].text, L("s071"));
}

TEST(SettingsPagesTest, MakerAddressesMatchTheirButtons) {
    EXPECT_EQ(std::string(Maker::emailUrl), "mailto:" + std::string(Maker::email));
    EXPECT_EQ(std::string(Maker::website), "https://" + std::string(Maker::websiteTitle));
}

TEST(SettingsPagesTest, UpdatesPageRowsInOrder) {
    const std::vector<Row> rows = settingsPageRows(kUpdatesPage, kInputs);
    EXPECT_EQ(describeRows(rows), (std::vector<std::string>{"label s072", "label s073", "label s074", "control",
                                                            "button s075", "control", "label s076"}));
    EXPECT_EQ(rows[0].fontSize, 22);
    EXPECT_TRUE(rows[0].bold);
    EXPECT_EQ(rows[1].text, L("s073", "2.4"));
    EXPECT_EQ(rows[2].spacingAfter, 28.0);
    EXPECT_EQ(rows[3].field, Field::automaticUpdates);
    EXPECT_EQ(rows[3].action, Action::changeAutomaticUpdates);
    EXPECT_EQ(rows[4].field, Field::updateButton);
    EXPECT_EQ(rows[4].action, Action::checkUpdates);
    EXPECT_EQ(rows[5].field, Field::updateMessage);
    EXPECT_EQ(rows[5].spacingAfter, 28.0);
    EXPECT_FALSE(rows[6].spacingAfter.has_value());
}

TEST(SettingsPagesTest, UnknownPageHasNoRows) {
    EXPECT_TRUE(settingsPageRows(4, kInputs).empty());
    EXPECT_TRUE(settingsPageRows(-1, kInputs).empty());
}

TEST(SettingsPagesTest, HeaderHasBrandTitleHelpAndThePageSelector) {
    const std::vector<Row> rows = settingsHeaderRows(kAboutPage);
    EXPECT_EQ(describeRows(rows), (std::vector<std::string>{"row(brand,label s046,space,help)", "pages"}));
    const Row& header = rows[0];
    EXPECT_EQ(header.spacing, 12);
    EXPECT_TRUE(header.centredVertically);
    EXPECT_EQ(header.children[0].size, 34);
    EXPECT_EQ(header.children[1].text, L("s046"));
    EXPECT_EQ(header.children[1].fontSize, 27);
    EXPECT_TRUE(header.children[1].bold);
    EXPECT_EQ(header.children[3].action, Action::showHelp);
    EXPECT_EQ(header.children[3].text, L("s142"));
    const Row& selector = rows[1];
    EXPECT_EQ(selector.segments, (std::vector<std::string>{L("s047"), "Dock", L("s048"), L("s049")}));
    EXPECT_EQ(selector.selected, 2);
    EXPECT_EQ(selector.action, Action::changeSettingsPage);
}

TEST(SettingsPagesTest, EveryPageEndsWithTheHiddenMessageLine) {
    for (int page = kGeneralPage; page <= kUpdatesPage; ++page) {
        const std::vector<Row> rows = settingsWindowRows(page, kInputs);
        EXPECT_EQ(rows.size(), settingsPageRows(page, kInputs).size() + 3);
        EXPECT_EQ(rows[1].selected, page);
        const Row& message = rows.back();
        EXPECT_EQ(message.kind, RowKind::existing);
        EXPECT_EQ(message.field, Field::message);
        EXPECT_EQ(message.hidden, true);
        EXPECT_EQ(message.colour, TextColour::secondaryLabel);
    }
}

std::vector<DisplayEntry> displays(std::uint32_t count) {
    std::vector<DisplayEntry> result;
    for (std::uint32_t index = 1; index <= count; ++index) {
        result.push_back({100 + index, "Display " + std::to_string(index)});
    }
    return result;
}

TEST(SettingsPagesTest, PopoverWithoutDisplaysShowsVolumeAndButtons) {
    const std::vector<Row> rows = popoverRows({});
    EXPECT_EQ(describeRows(rows),
              (std::vector<std::string>{"row(brand,label Vantle Control,space,help)", "row(label s122,button s123)",
                                        "slider", "button s033", "row(button s034,button s126)"}));
    const Row& header = rows[0];
    EXPECT_EQ(header.children[0].size, 28);
    EXPECT_EQ(header.children[1].fontSize, 18);
    EXPECT_TRUE(header.children[1].bold);
    EXPECT_TRUE(header.fullWidth);
    const Row& volumeRow = rows[1];
    EXPECT_EQ(volumeRow.spacing, 12);
    EXPECT_EQ(volumeRow.children[0].field, Field::quickVolumeLabel);
    EXPECT_EQ(volumeRow.children[1].field, Field::quickMute);
    EXPECT_EQ(volumeRow.children[1].action, Action::toggleMute);
    const Row& slider = rows[2];
    EXPECT_EQ(slider.field, Field::quickVolume);
    EXPECT_EQ(slider.action, Action::quickVolumeChanged);
    EXPECT_EQ(slider.minimum, 0);
    EXPECT_EQ(slider.maximum, 100);
    EXPECT_EQ(slider.value, 0);
    EXPECT_TRUE(slider.continuous);
    EXPECT_EQ(rows[3].action, Action::showDock);
    const Row& bottom = rows[4];
    EXPECT_TRUE(bottom.fillEqually);
    EXPECT_EQ(bottom.spacing, 12);
    EXPECT_EQ(bottom.children[0].action, Action::showGeneral);
    EXPECT_EQ(bottom.children[1].action, Action::quit);
}

TEST(SettingsPagesTest, PopoverHasANameAndASliderForEachDisplay) {
    const std::vector<Row> rows = popoverRows(displays(2));
    EXPECT_EQ(describeRows(rows), (std::vector<std::string>{"row(brand,label Vantle Control,space,help)",
                                                            "row(label s122,button s123)", "slider",
                                                            "label Display 1", "slider", "label Display 2", "slider",
                                                            "button s033", "row(button s034,button s126)"}));
    for (std::size_t index = 0; index < 2; ++index) {
        const Row& name = rows[3 + 2 * index];
        const Row& slider = rows[4 + 2 * index];
        EXPECT_EQ(name.field, Field::quickDisplayLabel);
        EXPECT_EQ(name.displayId, 101 + index);
        EXPECT_TRUE(name.fullWidth);
        EXPECT_EQ(slider.field, Field::quickDisplay);
        EXPECT_EQ(slider.action, Action::setBrightness);
        EXPECT_EQ(slider.displayId, 101 + index);
        EXPECT_TRUE(slider.continuous);
        EXPECT_TRUE(slider.fullWidth);
    }
}

TEST(SettingsPagesTest, PopoverWithSixDisplaysHasNoNote) {
    const std::vector<Row> rows = popoverRows(displays(6));
    EXPECT_EQ(rows.size(), 5u + 12u);
    EXPECT_EQ(rows[1].children.size(), 2u);  // the volume row comes right after the header
}

TEST(SettingsPagesTest, PopoverWithMoreDisplaysThanTheLimitNotesItAndShowsTheFirstSix) {
    const std::vector<Row> rows = popoverRows(displays(8));
    ASSERT_EQ(rows.size(), 6u + 12u);
    EXPECT_EQ(describeRow(rows[1]), "label s079");
    EXPECT_EQ(rows[1].text, L("s079", 8));
    EXPECT_TRUE(rows[1].fullWidth);
    EXPECT_EQ(describeRow(rows[2]), "row(label s122,button s123)");
    for (std::uint32_t index = 0; index < 6; ++index) {
        EXPECT_EQ(rows[4 + 2 * index].text, "Display " + std::to_string(index + 1));
        EXPECT_EQ(rows[5 + 2 * index].displayId, 101 + index);
    }
    EXPECT_EQ(describeRow(rows[16]), "button s033");
}

}  // namespace
}  // namespace vantle
