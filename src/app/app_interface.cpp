// The application's interface: the settings pages, the popover, the refresh of every control,
// and the small windows around them.
#include <QApplication>
#include <QGuiApplication>
#include <QLayout>
#include <QScreen>
#include <QScrollBar>
#include <cmath>

#include "app/app.h"
#include "app/app_controls.h"
#include "localization/localization.h"
#include "services/bundle.h"
#include "services/settings_keys.h"
#include "ui/appearance_linux.h"
#include "ui/help_window_qt.h"
#include "ui/layout_rules.h"
#include "ui/license_window_qt.h"
#include "ui/popover_qt.h"
#include "ui/refresh_facts.h"
#include "ui/settings_window_qt.h"
#include "ui/status_item_qt.h"
#include "ui/text_colour_qt.h"

namespace vantle {
namespace {

constexpr std::chrono::milliseconds kAppearanceDelay{400};

// Sets what the state says on whatever kind of control the widget is; the control's own
// signals stay quiet, so that setting a slider is never taken for the user moving it.
void apply(QWidget* widget, const ControlState& state) {
    if (widget == nullptr) {
        return;
    }
    const QSignalBlocker quiet(widget);
    if (auto* slider = qobject_cast<QSlider*>(widget); slider != nullptr && state.value) {
        if (!slider->isSliderDown()) {
            slider->setValue(static_cast<int>(std::lround(*state.value)));
        }
    }
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        if (state.checked) {
            button->setChecked(*state.checked);
        }
        if (state.title) {
            button->setText(QString::fromStdString(*state.title));
        }
    }
    if (auto* label = qobject_cast<QLabel*>(widget)) {
        if (state.text) {
            label->setText(QString::fromStdString(*state.text));
        }
        if (state.colour) {
            paintText(*label, *state.colour);
        }
    }
    if (state.enabled) {
        widget->setEnabled(*state.enabled);
    }
    if (state.hidden) {
        widget->setVisible(!*state.hidden);
    }
}

template <typename Widget>
void applyEach(const std::map<std::uint32_t, QPointer<Widget>>& widgets, const std::vector<DisplayControlState>& states) {
    for (const DisplayControlState& state : states) {
        if (auto found = widgets.find(state.id); found != widgets.end()) {
            apply(found->second, state.state);
        }
    }
}

template <typename Widget>
std::vector<std::uint32_t> idsOf(const std::map<std::uint32_t, QPointer<Widget>>& widgets) {
    std::vector<std::uint32_t> ids;
    for (const auto& [id, widget] : widgets) {
        if (widget) {
            ids.push_back(id);
        }
    }
    return ids;
}

// The content's height at its width, the way its layout would lay it out.
double fittingHeight(QWidget* content, int width) {
    QLayout* layout = content->layout();
    return layout->hasHeightForWidth() ? layout->totalHeightForWidth(width) : layout->totalSizeHint().height();
}

}  // namespace

void App::perform(const ActionEvent& event) {
    switch (event.action) {
    case Action::changeSettingsPage: changeSettingsPage(static_cast<int>(event.value)); break;
    case Action::showHelp: showHelp(); break;
    case Action::changeLanguage: languageRelaunch_.changeLanguage(event.choice); break;
    case Action::openLoginSettings: openLoginSettings(); break;
    case Action::openDisplaySettings: brightnessControl_.openDisplaySettings(); break;
    case Action::enableKeys: keyboard_.enableKeys(); break;
    case Action::repairKeyboardPermission: keyboard_.repairKeyboardPermission(); break;
    case Action::openMIDI: brightnessControl_.openMIDI(); break;
    case Action::openEmail: openEmail(); break;
    case Action::openWebsite: openWebsite(); break;
    case Action::showLicense: showLicense(); break;
    case Action::checkUpdates: checkUpdates(); break;
    case Action::toggleMute: volume_.toggleMute(); break;
    case Action::quickVolumeChanged: volume_.quickVolumeChanged(event.value); break;
    case Action::setBrightness:
        if (event.displayId) {
            brightnessControl_.setBrightness(*event.displayId, event.value);
        }
        break;
    case Action::showDock: showDock(); break;
    case Action::showGeneral: showGeneral(); break;
    case Action::quit: quit(); break;
    // The check boxes are long-lived and wired once, when they are made; the Dock belongs to
    // macOS and its buttons are disabled here.
    case Action::changeLogin:
    case Action::saveLinked:
    case Action::softwareChanged:
    case Action::changeAutomaticUpdates:
    case Action::smallSpacer:
    case Action::bigSpacer:
    case Action::addSeparator:
    case Action::none:
        break;
    }
}

void App::wireLongLivedControls() {
    Controls& controls = *controls_;
    connect(controls.linked.get(), &QCheckBox::toggled, this, [this](bool on) { brightnessControl_.saveLinked(on); });
    connect(controls.softwareToggle.get(), &QCheckBox::toggled, this,
            [this](bool on) { brightnessControl_.softwareChanged(on); });
    connect(controls.loginToggle.get(), &QCheckBox::toggled, this, [this](bool on) { changeLogin(on); });
    connect(controls.automaticUpdates.get(), &QCheckBox::toggled, this, [this](bool on) { changeAutomaticUpdates(on); });
    controls.volume->setRange(0, 100);
    connect(controls.volume.get(), &QSlider::valueChanged, this, [this](int value) { volume_.setVolume(value); });
    controls.message->setVisible(false);
}

RowRenderer App::renderer() {
    return RowRenderer(controls_->longLived, mainBundle().resourceDirectory(),
                       [this](const ActionEvent& event) { perform(event); });
}

PageInputs App::pageInputs() const {
    PageInputs inputs;
    inputs.languagePreference = defaults_.string(settings::kLanguagePreference);
    inputs.linked = defaults_.boolean(settings::kLinked);
    inputs.softwareBrightness = defaults_.boolean(settings::kSoftwareBrightness);
    inputs.releaseVersion = mainBundle().info("VantleReleaseVersion").value_or("");
    inputs.releaseDate = mainBundle().info("VantleReleaseDate").value_or("");
    inputs.dockAvailable = false;
    return inputs;
}

void App::rebuild() {
    Controls& controls = *controls_;
    controls.longLived.detachAll();
    controls.page = BuiltControls();
    controls.muteButton = std::make_unique<QPushButton>(QString::fromStdString(L("s123")));
    connect(controls.muteButton.get(), &QPushButton::clicked, this, [this] { volume_.toggleMute(); });
    QWidget* content = renderer().render(settingsWindowRows(settingsPage_, pageInputs()), {}, controls.page);
    window_->setContent(content);
    refresh();
}

void App::togglePopover() {
    if (popover_->isVisible()) {
        popover_->hide();
        return;
    }
    Controls& controls = *controls_;
    controls.popover = BuiltControls();
    const RowRenderer::Margins margins{18, 18, 18, 18, 12};
    QWidget* content = renderer().render(popoverRows(brightness_.screens()), margins, controls.popover);
    double widest = 0;
    for (const QPointer<QPushButton>& button : controls.popover.bottomRowButtons) {
        widest = std::max(widest, static_cast<double>(button->sizeHint().width()));
    }
    const QRect anchor = statusItem_ ? statusItem_->geometry() : QRect();
    QScreen* screen = anchor.isValid() ? QGuiApplication::screenAt(anchor.center()) : nullptr;
    const std::optional<double> visibleHeight =
        screen != nullptr ? std::optional<double>(screen->availableGeometry().height()) : std::nullopt;
    const double width = LayoutRules::popoverWidth(widest);
    const double stack = fittingHeight(content, static_cast<int>(width)) - 2 * margins.top;
    const LayoutRules::PopoverSize size = LayoutRules::popoverSize(widest, stack, visibleHeight);
    content->setFixedSize(static_cast<int>(size.width), static_cast<int>(size.documentHeight));
    popover_->setContent(content);
    popover_->scrollArea().verticalScrollBar()->setValue(0);
    refresh();
    popover_->showAgainst(anchor, QSize(static_cast<int>(size.width), static_cast<int>(size.contentHeight)));
}

void App::refresh() {
    if (!window_) {
        return;
    }
    Controls& controls = *controls_;
    RefreshFacts facts;
    facts.updates = updateFacts();
    facts.login = loginFacts();
    facts.controls.updateButton = !controls.page.updateButton.isNull();
    facts.controls.loginSettingsButton = !controls.page.loginSettingsButton.isNull();
    facts.controls.muteButton = controls.muteButton != nullptr;
    facts.controls.quickVolume = !controls.popover.quickVolume.isNull();
    facts.controls.quickVolumeLabel = !controls.popover.quickVolumeLabel.isNull();
    facts.controls.quickMute = !controls.popover.quickMute.isNull();
    facts.controls.keyboardButton = !controls.page.keyboardButton.isNull();
    facts.controls.quickDisplays = idsOf(controls.popover.quickDisplays);
    facts.controls.quickDisplayLabels = idsOf(controls.popover.quickDisplayLabels);
    facts.keyboard = {keyboard_.keyboardEnabled(), trusted(), keyboard_.updateRepairNeeded()};
    gatherHardwareFacts(facts, volume_, hal_, brightness_);

    const ControlStates states = refreshControls(facts);
    if (states.updateButton) {
        apply(controls.page.updateButton, *states.updateButton);
    }
    apply(controls.automaticUpdates.get(), states.automaticUpdates);
    apply(controls.loginToggle.get(), states.loginToggle);
    apply(controls.loginStatus.get(), states.loginStatus);
    if (states.loginSettingsButton) {
        apply(controls.page.loginSettingsButton, *states.loginSettingsButton);
    }
    apply(controls.audioWarning.get(), states.audioWarning);
    apply(controls.volume.get(), states.volume);
    apply(controls.audioLabel.get(), states.audioLabel);
    if (states.muteButton) {
        apply(controls.muteButton.get(), *states.muteButton);
    }
    if (states.quickVolume) {
        apply(controls.popover.quickVolume, *states.quickVolume);
    }
    if (states.quickVolumeLabel) {
        apply(controls.popover.quickVolumeLabel, *states.quickVolumeLabel);
    }
    if (states.quickMute) {
        apply(controls.popover.quickMute, *states.quickMute);
    }
    applyEach(controls.popover.quickDisplays, states.quickDisplays);
    applyEach(controls.popover.quickDisplayLabels, states.quickDisplayLabels);
    if (states.keyboardButton) {
        apply(controls.page.keyboardButton, *states.keyboardButton);
    }
    apply(controls.keyboardState.get(), states.keyboardState);
    // Written only when it changed: the same text again would cost a durable write every tick.
    if (defaults_.string(settings::kKeyboardStatus) != states.keyboardStatus) {
        defaults_.set(settings::kKeyboardStatus, states.keyboardStatus);
    }
    fitSettingsWindow();
}

void App::report(const std::string& text) {
    QLabel* message = controls_->message.get();
    message->setText(QString::fromStdString(text));
    message->setVisible(!text.empty());
    fitSettingsWindow();
}

void App::fitSettingsWindow() {
    if (!window_ || window_->scrollArea().widget() == nullptr) {
        return;
    }
    QWidget* content = window_->scrollArea().widget();
    const QRect frame = window_->frameGeometry();
    const QRect inside = window_->geometry();
    LayoutRules::SettingsWindowGeometry geometry;
    geometry.fittingHeight = fittingHeight(content, static_cast<int>(LayoutRules::kSettingsWidth));
    geometry.contentHeight = inside.height();
    geometry.frameTop = frame.top();
    geometry.frameHeight = frame.height();
    if (QScreen* screen = window_->screen() != nullptr ? window_->screen() : QGuiApplication::primaryScreen()) {
        const QRect visible = screen->availableGeometry();
        geometry.visible = LayoutRules::VerticalSpan{static_cast<double>(visible.top()), static_cast<double>(visible.height())};
    }
    const std::optional<LayoutRules::SettingsWindowFit> fit = LayoutRules::fitSettingsWindow(geometry);
    if (!fit) {
        return;
    }
    window_->resize(static_cast<int>(fit->contentWidth), static_cast<int>(std::ceil(fit->contentHeight)));
    int top = static_cast<int>(fit->frameTop);
    if (geometry.visible) {
        // A window that grew keeps its top edge, unless that would push its bottom off the screen.
        const int visibleBottom = static_cast<int>(geometry.visible->top + geometry.visible->height);
        const int frameHeight = window_->frameGeometry().height();
        top = std::max(static_cast<int>(geometry.visible->top), std::min(top, visibleBottom - frameHeight));
    }
    window_->move(frame.left(), top);
}

void App::openEmail() {
    workspace_.openUrl(std::string(Maker::emailUrl));
}

void App::openWebsite() {
    workspace_.openUrl(std::string(Maker::website));
}

void App::showLicense() {
    if (!licenseWindow_) {
        licenseWindow_ = std::make_unique<LicenseWindow>(mainBundle().resourceDirectory() / "LICENSE.txt");
        const QRect area = licenseWindow_->screen()->availableGeometry();
        licenseWindow_->move(area.center() - licenseWindow_->rect().center());
    }
    licenseWindow_->show();
    licenseWindow_->raise();
    licenseWindow_->activateWindow();
}

void App::showHelp() {
    closePopover();
    if (!helpWindow_) {
        const std::filesystem::path folder = mainBundle().resourceDirectory() / "Help";
        helpWindow_ = std::make_unique<HelpWindow>(folder / (Localization::language() + ".html"), folder);
        const QRect area = helpWindow_->screen()->availableGeometry();
        helpWindow_->move(area.center() - helpWindow_->rect().center());
    }
    helpWindow_->show();
    helpWindow_->raise();
    helpWindow_->activateWindow();
}

void App::followSystemAppearance() {
    DesktopAppearance::apply(appearance_ && appearance_->dark());
}

void App::themeChanged() {
    // The desktop announces a new scheme before every program has its new colours; wait a
    // moment so that what we read is the settled one.
    QTimer::singleShot(kAppearanceDelay, this, [this] {
        followSystemAppearance();
        refresh();
    });
}

}  // namespace vantle
