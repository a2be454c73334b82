#pragma once

#include <QScrollArea>

namespace vantle {

// Puts content into area in place of what it showed; a null content leaves the area empty. The
// old content is hidden at once and deleted once control is back in the event loop, never while
// one of its own handlers may still be running.
void replaceScrolledContent(QScrollArea& area, QWidget* content);

}  // namespace vantle
