#pragma once

#include <QPointer>
#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include "ui/settings_pages.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QSlider;
class QVBoxLayout;
class QWidget;

namespace vantle {

// The controls that live as long as the program and that every build places again, so that
// their state survives a change of page. Created once by the application.
struct LongLivedControls {
    QCheckBox* loginToggle = nullptr;
    QLabel* loginStatus = nullptr;
    QCheckBox* linked = nullptr;
    QLabel* keyboardState = nullptr;
    QLabel* audioWarning = nullptr;
    QCheckBox* softwareToggle = nullptr;
    QCheckBox* automaticUpdates = nullptr;
    QLabel* updateMessage = nullptr;
    QLabel* message = nullptr;
    // Holds them while no page does. Never shown, so that a control the refresh shows while it
    // is off every page (a login status that gained a text) does not become a window of its own.
    QWidget* shelf = nullptr;

    QWidget* widgetOf(Field field) const;
    // Takes them out of a page that is about to be deleted, back onto the shelf.
    void detachAll();
};

// The controls one build created and the application keeps for the refresh; absent when the
// page or popover that holds them is not built. They go with their page.
struct BuiltControls {
    QPointer<QPushButton> loginSettingsButton;
    QPointer<QPushButton> keyboardButton;
    QPointer<QPushButton> updateButton;
    QPointer<QComboBox> languageMenu;
    QPointer<QLabel> quickVolumeLabel;
    QPointer<QSlider> quickVolume;
    QPointer<QPushButton> quickMute;
    std::map<std::uint32_t, QPointer<QSlider>> quickDisplays;
    std::map<std::uint32_t, QPointer<QLabel>> quickDisplayLabels;
    std::vector<QPointer<QPushButton>> bottomRowButtons;
};

// What a control reports when the user acts on it.
struct ActionEvent {
    Action action = Action::none;
    std::optional<std::uint32_t> displayId;
    double value = 0;    // a slider's value, a check box's state (0 or 1), a selected index
    std::string choice;  // the value of a chosen menu item
};

// Makes Qt widgets of rows: a vertical stack of them inside a flipped-free content widget, laid
// out top-down with the given margins and spacing. Sizes are in the points the rows give, which
// the toolkit draws as logical pixels.
class RowRenderer {
public:
    RowRenderer(LongLivedControls& longLived, std::filesystem::path resources, std::function<void(const ActionEvent&)> act)
        : longLived_(longLived), resources_(std::move(resources)), act_(std::move(act)) {}

    struct Margins {
        int leading = 26;
        int trailing = 26;
        int top = 24;
        int bottom = 24;
        int spacing = 13;
    };

    // The content widget holding the rows; built controls are recorded in built.
    QWidget* render(const std::vector<Row>& rows, const Margins& margins, BuiltControls& built);

private:
    QWidget* make(const Row& row, BuiltControls& built);
    QWidget* horizontal(const Row& row, BuiltControls& built);

    LongLivedControls& longLived_;
    std::filesystem::path resources_;
    std::function<void(const ActionEvent&)> act_;
};

// A wrapping label in the system font of size points, bold or regular, whose text can be selected.
QLabel* makeLabel(const std::string& text, double size, bool bold);
// The same label with its text not yet selectable: a page that places it makes it so. Selecting
// needs a text document, and making one lays the text out at once, which loads the fonts; a
// label made at start that no page shows yet should not cost them.
QLabel* makeUnplacedLabel(const std::string& text, double size, bool bold);

}  // namespace vantle
