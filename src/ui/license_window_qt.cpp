#include "ui/license_window_qt.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "localization/localization.h"
#include "services/file_contents.h"

namespace vantle {

LicenseWindow::LicenseWindow(const std::filesystem::path& licenseFile) {
    setWindowTitle(QString::fromStdString(L("s035")));
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint | Qt::WindowMaximizeButtonHint);
    resize(680, 530);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* text = new QPlainTextEdit(this);
    text->setReadOnly(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSize(12);
    text->setFont(font);
    text->document()->setDocumentMargin(20);
    const std::optional<std::string> contents = readFileContents(licenseFile);
    const QString shown = contents ? QString::fromUtf8(contents->data(), static_cast<qsizetype>(contents->size()))
                                   : QString::fromStdString(L("s036"));
    text->setPlainText(shown);
    layout->addWidget(text);
}

}  // namespace vantle
