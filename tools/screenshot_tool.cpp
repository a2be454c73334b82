// Writes a PNG of the whole X screen, or of the rectangle x y width height, for the test
// artefacts: screenshot_tool FILE [X Y WIDTH HEIGHT]
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    if (argc != 2 && argc != 6) {
        std::fprintf(stderr, "usage: screenshot_tool FILE [X Y WIDTH HEIGHT]\n");
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "xcb");
    QGuiApplication application(argc, argv);
    QScreen* screen = QGuiApplication::primaryScreen();
    const QRect whole = screen->virtualGeometry();
    QRect area = whole;
    if (argc == 6) {
        area = QRect(std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4]), std::atoi(argv[5]));
    }
    const QPixmap shot = screen->grabWindow(0, area.x(), area.y(), area.width(), area.height());
    return shot.save(QString::fromLocal8Bit(argv[1]), "PNG") ? 0 : 1;
}
