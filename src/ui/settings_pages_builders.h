#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "localization/localization.h"
#include "ui/settings_pages.h"

// Small makers of rows shared by the settings pages and the popover.
namespace vantle::row {

// A wrapping label of a key's text.
inline Row label(std::string_view key, double fontSize = 13, bool bold = false) {
    return Row{.kind = RowKind::label, .key = std::string(key), .text = L(key), .fontSize = fontSize, .bold = bold};
}

// A wrapping label of text that no table holds (names, the program's name).
inline Row literal(std::string text, double fontSize = 13, bool bold = false) {
    return Row{.kind = RowKind::label, .text = std::move(text), .fontSize = fontSize, .bold = bold};
}

inline Row section(std::string_view key) {
    return Row{.kind = RowKind::section, .key = std::string(key), .text = L(key), .fontSize = 17, .bold = true};
}

inline Row button(std::string_view key, Action action, Field field = Field::none) {
    return Row{.kind = RowKind::button, .key = std::string(key), .text = L(key), .field = field, .action = action};
}

inline Row literalButton(std::string text, Action action) {
    return Row{.kind = RowKind::button, .text = std::move(text), .action = action};
}

inline Row existing(Field field, Action action = Action::none) {
    return Row{.kind = RowKind::existing, .field = field, .action = action};
}

inline Row horizontal(std::vector<Row> children, double spacing = 12) {
    return Row{.kind = RowKind::horizontal, .spacing = spacing, .children = std::move(children)};
}

inline Row flexibleSpace() {
    return Row{.kind = RowKind::flexibleSpace};
}

// The header of the settings window and of the popover: brand mark, bold title, free space
// and the help button, centred vertically.
inline Row header(double brandSize, std::string_view titleKey, std::string title, double titleSize) {
    Row titleLabel = literal(std::move(title), titleSize, true);
    titleLabel.key = std::string(titleKey);
    Row help{.kind = RowKind::helpButton, .key = "s142", .text = L("s142"), .action = Action::showHelp};
    Row row = horizontal({Row{.kind = RowKind::brandMark, .size = brandSize}, std::move(titleLabel), flexibleSpace(),
                          std::move(help)});
    row.centredVertically = true;
    row.fullWidth = true;
    return row;
}

// Every row of a settings page is as wide as the page.
inline std::vector<Row> fullWidth(std::vector<Row> rows) {
    for (Row& each : rows) {
        each.fullWidth = true;
    }
    return rows;
}

inline Row withSpacingAfter(Row row, double spacing) {
    row.spacingAfter = spacing;
    return row;
}

}  // namespace vantle::row
