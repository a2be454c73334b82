#pragma once

#include <QTextBrowser>
#include <QWidget>
#include <filesystem>

namespace vantle {

// The help: our own pages in a browser that runs no script at all and follows only the links
// the help's navigation rules allow. Created once; closing only hides it.
class HelpWindow final : public QWidget {
public:
    // page: the help page of the running language; helpFolder: the folder of all pages.
    HelpWindow(const std::filesystem::path& page, const std::filesystem::path& helpFolder);

    QTextBrowser& browser() { return *browser_; }

private:
    void follow(const QUrl& link);

    QTextBrowser* browser_;
    std::filesystem::path helpFolder_;
};

}  // namespace vantle
