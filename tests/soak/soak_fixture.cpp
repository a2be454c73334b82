#include "soak_fixture.h"

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <thread>

#include "localization/localization.h"
#include "program_layout.h"
#include "screen_layouts.h"
#include "support/temporary_directory.h"

namespace vantle::testing {
namespace {

using namespace std::chrono_literals;

const char* const kMediaKeys[] = {"XF86AudioRaiseVolume", "XF86AudioLowerVolume", "XF86AudioMute",
                                  "XF86MonBrightnessUp", "XF86MonBrightnessDown"};
const char* const kModifiers[] = {"", "shift+alt+", "shift+", "alt+"};
const char* const kResidentSinks[] = {"studio", "desk", "mono", "surround", "cafe", "combo", "nested"};

std::string settingsTitle() {
    return Localization::text("s025", Localization::table("en"), Localization::table("en"));
}

// The settings the program starts with: brightness by software, so that the brightness keys
// and sliders act on Xvfb's gamma ramp instead of finding nothing to act on.
constexpr const char* kStartingSettings = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>softwareBrightness</key>
	<true/>
</dict>
</plist>
)";

}  // namespace

SoakTest::SoakTest() : random_(soakSeed()) {
    startTrayHost();
    pactl({"set-default-sink", "studio"});
    setSinkLevel("studio", 0.5f);
    writeFile(settingsFile(), kStartingSettings);
}

SoakTest::~SoakTest() {
    if (program_) {
        program_->terminate(10s);
    }
    for (const AddedSink& sink : addedSinks_) {
        pactl({"unload-module", sink.module});
    }
    applyScreenLayout(screenLayouts().front());
}

std::chrono::seconds SoakTest::soakDuration() {
    const char* text = std::getenv("VANTLE_SOAK_SECONDS");
    const long seconds = text ? std::strtol(text, nullptr, 10) : 0;
    return std::chrono::seconds(seconds > 0 ? seconds : 45);
}

std::uint64_t SoakTest::soakSeed() {
    static const std::uint64_t seed = [] {
        if (const char* text = std::getenv("VANTLE_SOAK_SEED")) {
            return static_cast<std::uint64_t>(std::strtoull(text, nullptr, 10));
        }
        return (static_cast<std::uint64_t>(std::random_device{}()) << 32) ^ std::random_device{}();
    }();
    return seed;
}

void SoakTest::startProgram() {
    std::map<std::string, std::string> environment{{"LANGUAGE", "en"}, {"LANG", "C.UTF-8"}, {"LC_ALL", "C.UTF-8"}};
    // In the sanitizer build the program's leaks must be reported at its exit; the one known
    // leak of the session bus library is suppressed as in the test command.
    const char* asan = std::getenv("ASAN_OPTIONS");
    const std::string asanOptions = asan ? asan : "";
    if (asanOptions.find("detect_leaks") == std::string::npos) {
        environment["ASAN_OPTIONS"] = asanOptions + (asanOptions.empty() ? "" : ":") + "detect_leaks=1";
    }
    if (std::getenv("LSAN_OPTIONS") == nullptr) {
        environment["LSAN_OPTIONS"] = std::string("suppressions=") + VANTLE_SANITIZER_SUPPRESSIONS + ":print_suppressions=0";
    }
    if (std::getenv("UBSAN_OPTIONS") == nullptr) {
        environment["UBSAN_OPTIONS"] = "print_stacktrace=1:halt_on_error=1";
    }
    program_ = std::make_unique<ObservedProgram>(
        VANTLE_PROGRAM, std::vector<std::string>{"--suppress-keyboard-invitation", "--show-settings"}, environment,
        configHome() / "program-output.txt");
    // The sanitizer build starts several times slower, and the machine may be busy.
    ASSERT_TRUE(waitFor([this] { return muteKeyTaken() || !program_->running(); }, 60s))
        << "the program did not take the keys\n"
        << program_->errorOutput();
    ASSERT_TRUE(programStillRuns());
    ASSERT_TRUE(waitFor([] { return trayIconCentre().has_value(); }, 30s)) << "no tray icon";
    ASSERT_TRUE(waitFor([this] { return settingsWindow().has_value(); }, 30s)) << "no settings window";
    // The tray host settles the icon's place about half a second after it shows.
    std::this_thread::sleep_for(1s);
}

std::optional<Geometry> SoakTest::popover() const {
    return windowNamed("Vantle Control");
}

std::optional<Geometry> SoakTest::settingsWindow() const {
    return windowNamed(settingsTitle());
}

bool SoakTest::openPopover() {
    if (popover()) {
        return true;
    }
    // The window tree is read while on-screen displays come and go; a window that vanishes in the
    // middle of the walk cuts the listing short, so the icon is looked for again for a moment.
    std::optional<Point> icon;
    if (!waitFor([&icon] { return (icon = trayIconCentre()).has_value(); }, 5s)) {
        return false;
    }
    clickAt(*icon);
    return waitFor([this] { return popover().has_value(); }, 10s);
}

void SoakTest::closePopover() {
    if (!popover()) {
        return;
    }
    // Escape closes a popup that holds the keyboard; a click elsewhere is the fallback.
    runChild("/usr/bin/xdotool", {"key", "Escape"});
    if (!waitFor([this] { return !popover().has_value(); }, 3s)) {
        clickAt(Point{200, 1000});  // left of the settings window
        waitFor([this] { return !popover().has_value(); }, 5s);
    }
}

int SoakTest::pick(int count) {
    return std::uniform_int_distribution<int>(0, count - 1)(random_);
}

void SoakTest::note(const std::string& action) {
    ++actionsDone_;
    recent_.push_back(std::to_string(actionsDone_) + ": " + action);
    if (recent_.size() > 40) {
        recent_.pop_front();
    }
}

std::string SoakTest::recentActions() const {
    std::string text = "the last actions, seed " + std::to_string(soakSeed()) + ":\n";
    for (const std::string& action : recent_) {
        text += "  " + action + "\n";
    }
    return text;
}

bool SoakTest::programStillRuns() {
    if (program_ && program_->running()) {
        return true;
    }
    const ObservedProgram::Ending& ending = program_->ending();
    ADD_FAILURE() << "the program ended (exit status " << ending.exitStatus.value_or(-1) << ", signal "
                  << ending.signal.value_or(0) << ")\n"
                  << recentActions() << "its output:\n"
                  << program_->errorOutput();
    return false;
}

void SoakTest::pressMediaKey() {
    const std::string keys = std::string(kModifiers[pick(4)]) + kMediaKeys[pick(5)];
    note("key " + keys);
    key(keys);
}

void SoakTest::holdMediaKey(std::optional<std::string> chosen) {
    // Xvfb repeats a held synthetic key after 660 ms, every 40 ms.
    const std::string keys = chosen ? *chosen : kMediaKeys[pick(5)];
    const int held = 700 + pick(600);
    note("hold " + keys + " for " + std::to_string(held) + " ms");
    keyDown(keys);
    std::this_thread::sleep_for(std::chrono::milliseconds(held));
    keyUp(keys);
}

void SoakTest::waitUntilTheVolumeSettles() {
    // Settled means unchanged over half a second, longer than the gap between two key repeats.
    float last = sinkLevel("studio");
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(500ms);
        const float now = sinkLevel("studio");
        if (now == last) {
            return;
        }
        last = now;
    }
    ADD_FAILURE() << "the volume still changed 10 s after a held key was released";
}

void SoakTest::moveAPopoverSlider() {
    if (!openPopover()) {
        note("popover did not open for a slider");
        return;
    }
    const std::optional<Geometry> shown = popover();
    if (!shown) {
        return;
    }
    // The volume slider or one of the displays' sliders; a row that the popover does not have
    // lands on a label or below the rows, which is harmless.
    const int row = pick(1 + static_cast<int>(listedMonitors().size()));
    const int offset = row == 0 ? kVolumeSliderY : kFirstDisplaySliderY + (row - 1) * kDisplayRowHeight;
    // The last 90 points hold the buttons that open the settings and quit, which are not ours
    // to press here; the popover may have fewer rows than there are monitors now.
    if (offset > shown->height - 90) {
        note("popover has no row " + std::to_string(row));
        return;
    }
    const int y = shown->y + offset;
    const int left = shown->x + kSliderMargin;
    const int span = shown->width - 2 * kSliderMargin;
    const Point from{left + pick(span), y};
    if (pick(2) == 0) {
        note("click popover row " + std::to_string(row) + " at x " + std::to_string(from.x - shown->x));
        clickAt(from);
    } else {
        const Point to{left + pick(span), y};
        note("drag popover row " + std::to_string(row) + " from x " + std::to_string(from.x - shown->x) + " to " +
             std::to_string(to.x - shown->x));
        dragFrom(from, to);
    }
}

void SoakTest::clickPopoverMute() {
    if (!openPopover()) {
        note("popover did not open for mute");
        return;
    }
    if (const std::optional<Geometry> shown = popover()) {
        note("click popover mute");
        clickAt(Point{shown->x + kMuteButtonX, shown->y + kMuteButtonY});
    }
}

void SoakTest::togglePopoverByTrayIcon() {
    if (const std::optional<Point> icon = trayIconCentre()) {
        note("click tray icon");
        clickAt(*icon);
    }
}

void SoakTest::switchSettingsPage(std::optional<int> page) {
    const int chosen = page.value_or(pick(4));
    const std::optional<Geometry> window = settingsWindow();
    if (!window) {
        note("settings window not found for page " + std::to_string(chosen));
        return;
    }
    note("settings page " + std::to_string(chosen));
    clickAt(Point{window->x + pageTabX(chosen), window->y + kPageSelectorY});
}

void SoakTest::addSoundDevice(bool makeDefault) {
    const std::string name = "soak_" + std::to_string(sinksMade_++);
    const int channels = pick(2) == 0 ? 2 : 1 + pick(6);
    const std::string module = pactl({"load-module", "module-null-sink", "sink_name=" + name,
                                      "channels=" + std::to_string(channels),
                                      "sink_properties=device.description=" + name});
    note("add sink " + name + " (" + std::to_string(channels) + " channels)" + (makeDefault ? ", the default" : ""));
    if (module.empty()) {
        return;
    }
    addedSinks_.push_back({name, module});
    if (makeDefault) {
        pactl({"set-default-sink", name});
    }
}

void SoakTest::removeSoundDevice() {
    const std::size_t index = static_cast<std::size_t>(pick(static_cast<int>(addedSinks_.size())));
    note("remove sink " + addedSinks_[index].name);
    pactl({"unload-module", addedSinks_[index].module});
    addedSinks_.erase(addedSinks_.begin() + static_cast<std::ptrdiff_t>(index));
}

void SoakTest::changeSoundDevices() {
    const int choice = pick(10);
    if (addedSinks_.size() < 4 && (addedSinks_.empty() || choice < 4)) {
        addSoundDevice(pick(2) == 0);
    } else if (choice < 7 && !addedSinks_.empty()) {
        removeSoundDevice();
    } else {
        std::vector<std::string> names(std::begin(kResidentSinks), std::end(kResidentSinks));
        for (const AddedSink& sink : addedSinks_) {
            names.push_back(sink.name);
        }
        const std::string& name = names[static_cast<std::size_t>(pick(static_cast<int>(names.size())))];
        note("default sink " + name);
        pactl({"set-default-sink", name});
    }
}

void SoakTest::changeScreens(std::optional<std::size_t> layout) {
    const std::size_t count = screenLayouts().size();
    // Another layout than the present one, so that every change is one.
    const std::size_t chosen = layout.value_or((layout_ + 1 + static_cast<std::size_t>(pick(static_cast<int>(count) - 1))) % count);
    note("screens: " + screenLayouts()[chosen].description);
    EXPECT_TRUE(applyScreenLayout(screenLayouts()[chosen])) << screenLayouts()[chosen].description;
    layout_ = chosen;
}

void SoakTest::randomAction() {
    // Weights: keys most often, as they are the program's main use; screens least, as each
    // change rebuilds the program's displays and takes the X server a moment.
    static const std::vector<int> weights = {30, 3, 14, 4, 5, 10, 10, 6, 5};
    std::discrete_distribution<int> kind(weights.begin(), weights.end());
    switch (kind(random_)) {
    case 0: pressMediaKey(); break;
    case 1: holdMediaKey(); break;
    case 2: moveAPopoverSlider(); break;
    case 3: clickPopoverMute(); break;
    case 4: togglePopoverByTrayIcon(); break;
    case 5: switchSettingsPage(); break;
    case 6: changeSoundDevices(); break;
    case 7: changeScreens(); break;
    default: {
        const int idle = 200 + pick(800);
        note("idle " + std::to_string(idle) + " ms");
        std::this_thread::sleep_for(std::chrono::milliseconds(idle));
        break;
    }
    }
    // A short, varying gap, so that some actions meet the program still busy with the last one.
    std::this_thread::sleep_for(std::chrono::milliseconds(pick(150)));
}

void SoakTest::warmUp() {
    // A key, checked on the sound server.
    key("XF86AudioRaiseVolume");
    EXPECT_TRUE(waitFor([] { return sinkLevel("studio") > 0.55f; }, 10s)) << sinkLevel("studio");
    for (const char* keys : {"shift+alt+XF86AudioLowerVolume", "XF86MonBrightnessDown", "shift+XF86MonBrightnessUp"}) {
        key(keys);
    }
    key("XF86AudioMute");
    EXPECT_TRUE(waitFor([] { return sinkLevel("studio") < 0.002f; }, 10s)) << sinkLevel("studio");
    key("XF86AudioMute");
    EXPECT_TRUE(waitFor([] { return sinkLevel("studio") > 0.5f; }, 10s)) << sinkLevel("studio");
    // A held volume key, whose repeats an instrumented program may still be working through after
    // the release; the level it leaves is set aside once they have all arrived.
    holdMediaKey("XF86AudioLowerVolume");
    waitUntilTheVolumeSettles();

    // The popover's volume slider, checked on the sound server, then the other controls. The click
    // near the slider's left end is checked from a level well above it.
    setSinkLevel("studio", 0.8f);
    ASSERT_TRUE(waitFor([] { return std::abs(sinkLevel("studio") - 0.8f) < 0.01f; }, 10s)) << sinkLevel("studio");
    ASSERT_TRUE(openPopover()) << "the popover did not open";
    const Geometry shown = *popover();
    const float before = sinkLevel("studio");
    clickAt(Point{shown.x + kSliderMargin + 10, shown.y + kVolumeSliderY});
    EXPECT_TRUE(waitFor([before] { return sinkLevel("studio") < before - 0.01f; }, 10s))
        << "a click on the popover's volume slider changed nothing: " << before << " " << sinkLevel("studio");
    dragFrom(Point{shown.x + kSliderMargin + 10, shown.y + kFirstDisplaySliderY},
             Point{shown.x + shown.width - kSliderMargin - 10, shown.y + kFirstDisplaySliderY});
    clickPopoverMute();
    EXPECT_TRUE(waitFor([] { return sinkLevel("studio") < 0.002f; }, 10s)) << "the popover's mute button did not mute";
    clickPopoverMute();
    EXPECT_TRUE(waitFor([] { return sinkLevel("studio") > 0.002f; }, 10s)) << "the popover's mute button did not unmute";
    closePopover();
    EXPECT_FALSE(popover().has_value()) << "the popover did not close";

    for (int page : {1, 2, 3, 0}) {
        switchSettingsPage(page);
        std::this_thread::sleep_for(300ms);
    }
    addSoundDevice(true);
    key("XF86AudioLowerVolume");
    removeSoundDevice();
    for (std::size_t layout = 1; layout <= screenLayouts().size(); ++layout) {
        changeScreens(layout % screenLayouts().size());
        std::this_thread::sleep_for(300ms);
    }
    programStillRuns();
}

void SoakTest::returnToRestingState() {
    closePopover();
    while (!addedSinks_.empty()) {
        removeSoundDevice();
    }
    pactl({"set-default-sink", "studio"});
    if (layout_ != 0) {
        changeScreens(0);
    }
    EXPECT_EQ(listedMonitors(), (std::vector<std::string>{"LEFT", "RIGHT"}));
    switchSettingsPage(0);
    // The on-screen display goes after 1.4 s and the watchdog ticks every 2 s: a few seconds
    // let everything the last actions started come to an end.
    std::this_thread::sleep_for(4s);
}

}  // namespace vantle::testing
