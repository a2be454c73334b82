// The modal alerts: the questions before quitting and about the keyboard permission, and the
// warning of a relaunch that failed.
#include <QAbstractButton>
#include <QMessageBox>
#include <QPushButton>

#include "app/app.h"
#include "localization/localization.h"

namespace vantle {

bool App::ask(const std::string& message, const std::string& informative, const std::string& first,
              const std::string& second) {
    closePopover();
    QMessageBox box;
    box.setIcon(QMessageBox::Question);
    box.setWindowTitle(QString::fromStdString(L("s025")));
    box.setText(QString::fromStdString(message));
    box.setInformativeText(QString::fromStdString(informative));
    QAbstractButton* firstButton = box.addButton(QString::fromStdString(first), QMessageBox::AcceptRole);
    QAbstractButton* secondButton = box.addButton(QString::fromStdString(second), QMessageBox::RejectRole);
    box.setDefaultButton(qobject_cast<QPushButton*>(firstButton));
    // Escape and the close box choose the first button: the second is the one that acts (quit,
    // quit with the outputs still silent, open the keyboard settings), and it must be chosen.
    box.setEscapeButton(firstButton);
    box.raise();
    box.activateWindow();
    box.exec();
    return box.clickedButton() == secondButton;
}

bool App::confirmQuit() {
    return ask(L("s026"), L("s027"), L("s124"), L("s028"));
}

bool App::stayAfterFailedRestore() {
    // The second button reads the same in every language, on purpose.
    return !ask(L("s029"), L("s030"), L("s031"), "Quitter");
}

bool App::runAlert(const KeyboardAlert& alert) {
    return ask(alert.message, alert.informative, alert.firstButton, alert.secondButton);
}

void App::alert(const std::string& text) {
    closePopover();
    QMessageBox box;
    box.setIcon(QMessageBox::Warning);
    box.setWindowTitle(QString::fromStdString(L("s025")));
    box.setText(QString::fromStdString(text));
    box.exec();
}

}  // namespace vantle
