// A stand-in for the desktop's settings portal, for tests on a private session bus: it owns the
// portal's name until it is ended, so that a program sees a portal there and may listen to it.
// It answers no method; a program that asks it for the colour scheme gets an error at once.
#include <QCoreApplication>
#include <QDBusConnection>
#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"))) {
        std::fprintf(stderr, "stand_in_portal: cannot own the portal's name on the session bus\n");
        return 1;
    }
    return QCoreApplication::exec();
}
