// The least a program on this toolkit does to put an icon in the tray: the application object,
// one 22-pixel PNG and the tray icon, nothing else. The footprint script starts it beside the
// program and the applet it is compared with, to show how much of a start and of the memory is
// the toolkit's own and out of the program's reach.
#include <QApplication>
#include <QImageReader>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QImageReader reader(QStringLiteral(VANTLE_TRAY_ICON), "png");
    reader.setAutoDetectImageFormat(false);
    QSystemTrayIcon tray(QIcon(QPixmap::fromImage(reader.read())));
    tray.show();
    return QApplication::exec();
}
