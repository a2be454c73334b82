#include "ui/scrolled_content_qt.h"

namespace vantle {

void replaceScrolledContent(QScrollArea& area, QWidget* content) {
    // Content is replaced from the signals of its own controls: a page tab's currentChanged, a
    // slider's valueChanged, a button's click. The toolkit goes on using that control after the
    // signal returns (a tab bar finishes its mouse press, a button its release), so deleting the
    // old content here would free the control under its running handler.
    if (QWidget* old = area.takeWidget()) {
        old->hide();
        old->deleteLater();
    }
    if (content != nullptr) {
        area.setWidget(content);
    }
}

}  // namespace vantle
