#include <QEventLoop>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <cstdio>

#include "app/check_modes.h"
#include "app/display_backends.h"
#include "app/scheduler_qt.h"
#include "keys/osd.h"
#include "keys/osd_check.h"
#include "keys/osd_panel_qt.h"

namespace vantle {
namespace {

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

int runVerifyOsd(DisplayBackends& displays) {
    // Without a window system there is no screen to show a panel on.
    if (!displays.hasWindowSystem()) {
        std::printf("FAIL: no OSD panels\n");
        return 1;
    }
    QtScheduler scheduler;
    QtOsdPanelFactory factory;
    Brightness& brightness = displays.brightness();
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
    for (const std::unique_ptr<OsdPanel>& panel : osd.panels()) {
        OsdPanelWidget* widget = widgetOf(*panel);
        const std::optional<std::string> failure =
            widget != nullptr ? osdPanelFailure(factsOf(*widget), screens) : "FAIL: OSD geometry or focus";
        if (failure) {
            std::printf("%s\n", failure->c_str());
            return 1;
        }
        for (const char* line : kOsdPassLines) {
            std::printf("%s\n", line);
        }
    }
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
