#pragma once

// The program's own platform, with its displays made on stand-in DDC/CI monitors: everything
// else (sound, keys, windows, settings) is the real platform's.
#include <xcb/xcb.h>

#include <QGuiApplication>
#include <chrono>
#include <memory>

#include "app/display_backends_linux.h"
#include "app/platform.h"
#include "display/ddc/testing/stand_in_ddc_bus.h"

namespace vantle::testing {

class StandInMonitorsPlatform final : public Platform {
public:
    StandInMonitorsPlatform(int& argc, char** argv, UserDefaults& defaults,
                            std::shared_ptr<ddc::testing::StandInDdcBus> bus)
        : real_(makePlatform(argc, argv, defaults)) {
        ddc::DdcBrightness::Options ddc;
        ddc.hasI2cBuses = [] { return true; };
        ddc.loadBus = [bus]() -> std::shared_ptr<ddc::DdcBus> { return bus; };
        xcb_connection_t* connection = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
        displays_ = makeX11DisplayBackends(connection, defaults, {}, X11DisplayOptions{std::move(ddc)});
    }

    bool hasWindowSystem() const override { return real_->hasWindowSystem(); }
    std::string missingWindowSystemMessage() const override { return real_->missingWindowSystemMessage(); }
    UserDefaults& defaults() override { return real_->defaults(); }
    std::unique_ptr<AudioHal> makeAudioHal() override { return real_->makeAudioHal(); }
    DisplayBackends& displays() override { return *displays_; }
    std::unique_ptr<KeyTap> makeKeyTap() override { return real_->makeKeyTap(); }
    KeyboardTrust& keyboardTrust() override { return real_->keyboardTrust(); }
    OsdPanelFactory& osdPanels() override { return real_->osdPanels(); }
    std::unique_ptr<StatusIcon> makeStatusIcon(const std::filesystem::path& artwork,
                                               std::function<void()> clicked) override {
        return real_->makeStatusIcon(artwork, std::move(clicked));
    }
    std::unique_ptr<AppearanceSource> makeAppearance(std::function<void()> changed) override {
        return real_->makeAppearance(std::move(changed));
    }
    Workspace& workspace() override { return real_->workspace(); }
    LoginService& loginService() override { return real_->loginService(); }
    bool installedForLogin() override { return real_->installedForLogin(); }
    std::unique_ptr<Updater> makeUpdater(UpdaterDelegate& delegate, Scheduler& scheduler,
                                         MainThreadPoster post) override {
        return real_->makeUpdater(delegate, scheduler, std::move(post));
    }
    ProcessRunner& processRunner() override { return real_->processRunner(); }
    bool dockAvailable() const override { return real_->dockAvailable(); }
    std::unique_ptr<SingleInstance> makeSingleInstance() override { return real_->makeSingleInstance(); }
    ProgramProcesses& processes() override { return real_->processes(); }
    std::unique_ptr<SessionEndWatch> watchSessionEnd(SessionEndHandler& handler) override {
        return real_->watchSessionEnd(handler);
    }
    std::unique_ptr<SessionEndWatch> watchWindowSystemLoss(SessionEndHandler& handler) override {
        return real_->watchWindowSystemLoss(handler);
    }

private:
    // The real platform owns the toolkit's application object, which the displays' shades need
    // until they are gone: it is made first and goes last.
    std::unique_ptr<Platform> real_;
    std::unique_ptr<DisplayBackends> displays_;
};

}  // namespace vantle::testing
