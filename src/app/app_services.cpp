// Launch at login and software updates, as the application offers them.
#include <QLabel>

#include "app/app.h"
#include "app/app_controls.h"
#include "localization/localization.h"

namespace vantle {

void App::configureInitialLogin() {
    login_.configureInitialLogin();
}

void App::changeLogin(bool on) {
    login_.changeLogin(on);
}

void App::openLoginSettings() {
    login_.openLoginSettings();
}

RefreshFacts::Login App::loginFacts() {
    return {login_.status(), login_.installedForLogin(), login_.loginError()};
}

void App::startUpdates() {
    updates_.startUpdates();
}

void App::checkUpdates() {
    updates_.checkUpdates();
}

void App::changeAutomaticUpdates(bool on) {
    updates_.changeAutomaticUpdates(on);
}

RefreshFacts::Updates App::updateFacts() {
    const UpdatePresentation presentation = updates_.presentation();
    return {presentation.updateButtonEnabled, presentation.automaticUpdatesOn};
}

void App::showUpdateMessage(const std::string& text) {
    QLabel* message = controls_->updateMessage.get();
    message->setTextFormat(Qt::PlainText);
    message->setText(QString::fromStdString(text));
    fitSettingsWindow();
}

void App::offerUpdate(const UpdateOffer& offer) {
    // Installing stays with the package manager: the program only shows where the new version is.
    QLabel* message = controls_->updateMessage.get();
    if (offer.downloadLink.rfind("https://", 0) != 0) {
        // A feed that points anywhere but a secure web page gets no link to follow.
        showUpdateMessage(L("s006") + "\n" + offer.displayVersion);
        return;
    }
    const QString link = QString::fromStdString(offer.downloadLink).toHtmlEscaped();
    message->setTextFormat(Qt::RichText);
    message->setOpenExternalLinks(false);
    message->setText(QString::fromStdString(L("s006")).toHtmlEscaped() + QStringLiteral("<br><b>") +
                     QString::fromStdString(offer.displayVersion).toHtmlEscaped() + QStringLiteral("</b> · <a href=\"") +
                     link + QStringLiteral("\">") + link + QStringLiteral("</a>"));
    disconnect(message, &QLabel::linkActivated, this, nullptr);
    connect(message, &QLabel::linkActivated, this,
            [this](const QString& url) { platform_.workspace().openUrl(url.toStdString()); });
    fitSettingsWindow();
}

}  // namespace vantle
