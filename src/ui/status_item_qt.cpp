#include "ui/status_item_qt.h"

#include <QMenu>

#include "localization/localization.h"

namespace vantle {
namespace {

QIcon ourIcon(const std::filesystem::path& iconFolder) {
    QIcon icon;
    for (int size : {16, 22, 24, 32, 48, 64}) {
        const std::filesystem::path file = iconFolder / ("vantle-control-" + std::to_string(size) + ".png");
        if (std::filesystem::exists(file)) {
            icon.addFile(QString::fromStdString(file.string()), QSize(size, size));
        }
    }
    return icon;
}

}  // namespace

StatusItem::StatusItem(const std::filesystem::path& iconFolder, QMenu* menu, std::function<void()> clicked) {
    tray_.setIcon(QIcon::fromTheme(QStringLiteral("vantle-control"), ourIcon(iconFolder)));
    tray_.setToolTip(QString::fromStdString(L("s024")));
    tray_.setContextMenu(menu);
    QObject::connect(&tray_, &QSystemTrayIcon::activated, this, [clicked](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) {
            clicked();
        }
    });
    tray_.show();
}

}  // namespace vantle
