#include "ui/help_window_qt.h"

#include <QDesktopServices>
#include <QVBoxLayout>

#include "localization/localization.h"
#include "ui/help_navigation.h"

namespace vantle {

HelpWindow::HelpWindow(const std::filesystem::path& page, const std::filesystem::path& helpFolder)
    : browser_(new QTextBrowser(this)), helpFolder_(helpFolder) {
    setWindowTitle(QString::fromStdString(L("s142")));
    resize(880, 720);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(browser_);
    // Every link goes through our rules instead of the browser's own.
    browser_->setOpenLinks(false);
    browser_->setOpenExternalLinks(false);
    browser_->setSearchPaths({QString::fromStdString(helpFolder.string())});
    connect(browser_, &QTextBrowser::anchorClicked, this, &HelpWindow::follow);
    // A page missing for this language leaves the window empty rather than guessing another.
    if (std::filesystem::is_regular_file(page)) {
        browser_->setSource(QUrl::fromLocalFile(QString::fromStdString(page.string())));
    }
}

void HelpWindow::follow(const QUrl& link) {
    const QUrl resolved = browser_->source().resolved(link);
    const std::string folder = std::filesystem::weakly_canonical(helpFolder_).string();
    switch (decideHelpLink(resolved.toString().toStdString(), folder)) {
    case HelpLinkDecision::show:
        browser_->setSource(resolved);
        break;
    case HelpLinkDecision::handOff:
        QDesktopServices::openUrl(resolved);
        break;
    case HelpLinkDecision::drop:
        break;
    }
}

}  // namespace vantle
