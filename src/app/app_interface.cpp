// The application's interface: the settings pages, the popover, and the small windows around
// them.
#include <QApplication>
#include <QComboBox>
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
#include "ui/help_window_qt.h"
#include "ui/layout_rules.h"
#include "ui/license_window_qt.h"
#include "ui/popover_qt.h"
#include "ui/settings_window_qt.h"
#include "ui/status_icon.h"

namespace vantle {
namespace {

constexpr std::chrono::milliseconds kAppearanceDelay{400};



// The content's height at its width, the way its layout would lay it out.
double fittingHeight(QWidget* content, int width) {
    QLayout* layout = content->layout();
    return layout->hasHeightForWidth() ? layout->totalHeightForWidth(width) : layout->totalSizeHint().height();
}

}  // namespace

void App::closePopover() {
    if (popover_) {
        popover_->hide();
    }
}

void App::bringSettingsForward() {
    closePopover();
    if (pageWanted_) {
        // A made page starts with an empty status line; what was said since the page was given
        // up is still to be read on it.
        const std::string said = controls_->message->text().toStdString();
        buildPage();
        report(said);
        refresh();
    }
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void App::show() {
    bringSettingsForward();
}

void App::showPage(int page) {
    settingsPage_ = page;
    rebuild();
    bringSettingsForward();
}

void App::changeSettingsPage(int page) {
    settingsPage_ = page;
    rebuild();
}

void App::disableLanguageMenu() {
    if (controls_->page.languageMenu) {
        controls_->page.languageMenu->setEnabled(false);
    }
}

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
    inputs.dockAvailable = platform_.dockAvailable();
    return inputs;
}

void App::rebuild() {
    Controls& controls = *controls_;
    controls.longLived.detachAll();
    controls.page = BuiltControls();
    controls.muteButton = std::make_unique<QPushButton>(QString::fromStdString(L("s123")));
    connect(controls.muteButton.get(), &QPushButton::clicked, this, [this] { volume_.toggleMute(); });
    if (window_->isVisible()) {
        buildPage();
    } else {
        // A page made for a hidden window is given up too: the next showing makes it afresh. Its
        // status line is emptied now, as a page made now would have it.
        window_->setContent(nullptr);
        pageWanted_ = true;
        report("");
    }
    refresh();
}

void App::buildPage() {
    QWidget* content = renderer().render(settingsWindowRows(settingsPage_, pageInputs()), {}, controls_->page);
    window_->setContent(content);
    pageWanted_ = false;
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
    platform_.workspace().openUrl(std::string(Maker::emailUrl));
}

void App::openWebsite() {
    platform_.workspace().openUrl(std::string(Maker::website));
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
    if (appearance_) {
        appearance_->apply(appearance_->dark());
    }
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
