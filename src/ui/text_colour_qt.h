#pragma once

#include <QColor>
#include <QLabel>

#include "ui/control_refresh.h"

namespace vantle {

// The colour a status text is drawn in, from the application's palette as it is now.
QColor colourOf(TextColour colour);
// Draws label's text in colour; everything else about its palette stays.
void paintText(QLabel& label, TextColour colour);

}  // namespace vantle
