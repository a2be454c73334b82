#include "ui/status_item_qt.h"

#include <QMenu>
#include <initializer_list>

#include "localization/localization.h"
#include "ui/png_image_qt.h"

namespace vantle {
namespace {

// One size is enough for the tray to show the icon; every size is there before it is first drawn.
constexpr int kFirstSize = 22;
constexpr std::initializer_list<int> kSizes = {16, 22, 24, 32, 48, 64};

QIcon ourIcon(const std::filesystem::path& iconFolder, std::initializer_list<int> sizes) {
    QIcon icon;
    for (int size : sizes) {
        const std::filesystem::path file = iconFolder / ("vantle-control-" + std::to_string(size) + ".png");
        const QImage image = readPng(file);
        if (!image.isNull()) {
            icon.addPixmap(QPixmap::fromImage(image));
        }
    }
    return icon;
}

}  // namespace

StatusItem::StatusItem(const std::filesystem::path& iconFolder, std::function<void()> clicked)
    : iconFolder_(iconFolder) {
    tray_.setIcon(ourIcon(iconFolder_, {kFirstSize}));
    QObject::connect(&tray_, &QSystemTrayIcon::activated, this, [clicked](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) {
            clicked();
        }
    });
    tray_.show();
}

void StatusItem::finish(QMenu* menu) {
    tray_.setToolTip(QString::fromStdString(L("s024")));
    tray_.setContextMenu(menu);
    // A theme's own icon replaces ours where the desktop's theme has one; finding out reads the
    // theme's whole index. Where it has none, the tray gets every size we have, so that whatever
    // size it asks for is drawn artwork rather than a scaled one.
    const QIcon themed = QIcon::fromTheme(QStringLiteral("vantle-control"));
    const bool themeHasOne = !themed.isNull() && !themed.availableSizes().isEmpty();
    tray_.setIcon(themeHasOne ? themed : ourIcon(iconFolder_, kSizes));
}

}  // namespace vantle
