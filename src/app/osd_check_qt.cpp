#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <memory>

#include "app/check_modes.h"
#include "app/platform.h"
#include "app/scheduler_qt.h"
#include "keys/osd.h"
#include "keys/osd_check.h"
#include "keys/osd_panel_qt.h"

namespace vantle {
namespace {

// A plain white window just under a panel, so that what the screen shows at the panel's
// corners and centre says what the panel painted, whatever the desktop behind it looks like.
std::unique_ptr<QWidget> lightBackingFor(OsdPanelWidget& panel) {
    auto backing = std::make_unique<QWidget>(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                                                          Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus |
                                                          Qt::X11BypassWindowManagerHint);
    backing->setAttribute(Qt::WA_ShowWithoutActivating);
    backing->setWindowTitle(QStringLiteral("Vantle Control OSD check"));
    QPalette palette = backing->palette();
    palette.setColor(QPalette::Window, Qt::white);
    backing->setPalette(palette);
    backing->setAutoFillBackground(true);
    backing->setGeometry(panel.geometry());
    backing->show();
    panel.raise();
    return backing;
}

// Lets the window system map and paint the windows just shown, and a compositor blend them.
void letThePanelsBeDrawn() {
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < 400) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    }
}

// Reads the screen's pixels at the panel's corner and centre.
void readWhatTheScreenShows(const OsdPanelWidget& widget, OsdPanelFacts& facts) {
    QScreen* screen = widget.screen() != nullptr ? widget.screen() : QGuiApplication::primaryScreen();
    if (screen == nullptr) {
        return;
    }
    // Window 0 is the whole screen, with every window shown on it, in coordinates from the
    // screen's top left corner.
    const QRect frame = widget.geometry();
    const QPoint origin = frame.topLeft() - screen->geometry().topLeft();
    const QImage shown = screen->grabWindow(0, origin.x(), origin.y(), frame.width(), frame.height()).toImage();
    if (shown.width() < frame.width() || shown.height() < frame.height()) {
        return;
    }
    const QColor corner = shown.pixelColor(1, 1);
    const QColor centre = shown.pixelColor(frame.width() / 2, frame.height() / 2);
    facts.shownCornerUncovered = corner.red() > 240 && corner.green() > 240 && corner.blue() > 240;
    facts.shownCentreCovered = centre.red() < 100 && centre.green() < 100 && centre.blue() < 100;
}

OsdPanelFacts factsOf(OsdPanelWidget& widget) {
    OsdPanelFacts facts;
    const QRect geometry = widget.geometry();
    facts.frame = {geometry.x(), geometry.y(), geometry.width(), geometry.height()};
    const Qt::WindowFlags flags = widget.windowFlags();
    facts.inputTransparent = flags.testFlag(Qt::WindowTransparentForInput);
    facts.focusable = !flags.testFlag(Qt::WindowDoesNotAcceptFocus) || widget.focusPolicy() != Qt::NoFocus;
    // A translucent top-level window is cleared to transparent before every paint: its
    // background is fully transparent and it is not opaque.
    const bool translucent = widget.testAttribute(Qt::WA_TranslucentBackground);
    facts.opaque = !translucent;
    facts.backgroundAlpha = translucent ? 0 : 255;
    facts.shadow = !flags.testFlag(Qt::NoDropShadowWindowHint);
    const QImage& mask = widget.maskImage();
    facts.hasMask = !mask.isNull();
    if (facts.hasMask) {
        facts.maskCornerAlpha = qAlpha(mask.pixel(0, 0));
        facts.maskCentreAlpha = mask.pixelColor(mask.width() / 2, mask.height() / 2).alphaF();
    }
    return facts;
}

}  // namespace

int runVerifyOsd(Platform& platform) {
    // Without a window system there is no screen to show a panel on.
    if (!platform.hasWindowSystem()) {
        std::printf("FAIL: no OSD panels\n");
        return 1;
    }
    QtScheduler scheduler;
    QtOsdPanelFactory factory;
    Brightness& brightness = platform.displays().brightness();
    OSD osd(brightness.screenSystem(), brightness, factory, scheduler);
    osd.show(0.5f, false);
    if (osd.panels().empty()) {
        std::printf("FAIL: no OSD panels\n");
        return 1;
    }
    std::vector<ScreenFrame> screens;
    for (QScreen* screen : QGuiApplication::screens()) {
        const QRect geometry = screen->geometry();
        screens.push_back({geometry.x(), geometry.y(), geometry.width(), geometry.height()});
    }
    std::vector<std::unique_ptr<QWidget>> backings;
    for (const std::unique_ptr<OsdPanel>& panel : osd.panels()) {
        if (OsdPanelWidget* widget = widgetOf(*panel)) {
            backings.push_back(lightBackingFor(*widget));
        }
    }
    letThePanelsBeDrawn();
    for (const std::unique_ptr<OsdPanel>& panel : osd.panels()) {
        OsdPanelWidget* widget = widgetOf(*panel);
        std::optional<OsdPanelFacts> facts;
        if (widget != nullptr) {
            facts = factsOf(*widget);
            readWhatTheScreenShows(*widget, *facts);
        }
        const std::optional<std::string> failure =
            facts ? osdPanelFailure(*facts, screens) : "FAIL: OSD geometry or focus";
        if (failure) {
            std::printf("%s\n", failure->c_str());
            return 1;
        }
        for (const char* line : kOsdPassLines) {
            std::printf("%s\n", line);
        }
    }
    backings.clear();
    // Let the display's own dismissal timer fire.
    QEventLoop loop;
    QTimer::singleShot(1700, &loop, &QEventLoop::quit);
    loop.exec();
    if (osd.panels().empty()) {
        std::printf("PASS: automatic OSD dismissal\n");
        return 0;
    }
    std::printf("FAIL: OSD dismissal\n");
    return 1;
}

}  // namespace vantle
