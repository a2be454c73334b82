#include "ui/text_colour_qt.h"

#include <QApplication>
#include <QPalette>

namespace vantle {

QColor colourOf(TextColour colour) {
    if (colour == TextColour::systemOrange) {
        return QColor(0xe0, 0x7b, 0x00);
    }
    // Between the text and the background: quieter than the text, still easy to read.
    const QPalette palette = QApplication::palette();
    const QColor text = palette.color(QPalette::WindowText);
    const QColor background = palette.color(QPalette::Window);
    return QColor((text.red() * 6 + background.red() * 4) / 10, (text.green() * 6 + background.green() * 4) / 10,
                  (text.blue() * 6 + background.blue() * 4) / 10);
}

void paintText(QLabel& label, TextColour colour) {
    QPalette palette = label.palette();
    palette.setColor(QPalette::WindowText, colourOf(colour));
    label.setPalette(palette);
}

}  // namespace vantle
