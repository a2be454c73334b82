#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>
#include <memory>

#include "localization/localization.h"
#include "ui/row_renderer_qt.h"

namespace vantle {

// Every control the application keeps in a named field. The long-lived ones are created once and
// placed again by every build; the built ones belong to the page or popover that made them and
// are absent while it is not built.
struct App::Controls {
    Controls() {
        longLived.loginToggle = loginToggle.get();
        longLived.loginStatus = loginStatus.get();
        longLived.linked = linked.get();
        longLived.keyboardState = keyboardState.get();
        longLived.audioWarning = audioWarning.get();
        longLived.softwareToggle = softwareToggle.get();
        longLived.automaticUpdates = automaticUpdates.get();
        longLived.updateMessage = updateMessage.get();
        longLived.message = message.get();
        longLived.shelf = shelf.get();
        // With a layout on the shelf, a control shown there is left for the layout to size, as
        // on a page; without one, the toolkit sizes it at once, which lays out its text and
        // loads the fonts for a control nobody sees.
        new QVBoxLayout(shelf.get());
        longLived.detachAll();
    }

    static std::unique_ptr<QLabel> wrappingLabel(const std::string& text) {
        std::unique_ptr<QLabel> label(makeUnplacedLabel(text, 13, false));
        return label;
    }

    // First, so that it goes last: the controls it holds delete themselves from it before.
    std::unique_ptr<QWidget> shelf = std::make_unique<QWidget>();
    std::unique_ptr<QCheckBox> automaticUpdates = std::make_unique<QCheckBox>(QString::fromStdString(L("s002")));
    std::unique_ptr<QLabel> updateMessage = wrappingLabel(L("s001"));
    std::unique_ptr<QCheckBox> loginToggle = std::make_unique<QCheckBox>(QString::fromStdString(L("s014")));
    std::unique_ptr<QLabel> loginStatus = wrappingLabel("");
    std::unique_ptr<QCheckBox> linked = std::make_unique<QCheckBox>(QString::fromStdString(L("s012")));
    std::unique_ptr<QLabel> keyboardState = wrappingLabel("");
    std::unique_ptr<QLabel> audioWarning = wrappingLabel("");
    std::unique_ptr<QCheckBox> softwareToggle = std::make_unique<QCheckBox>(QString::fromStdString(L("s017")));
    std::unique_ptr<QLabel> message = wrappingLabel(L("s011"));
    // Placed on no page; the refresh keeps them current all the same.
    std::unique_ptr<QSlider> volume = std::make_unique<QSlider>(Qt::Horizontal);
    std::unique_ptr<QLabel> audioLabel = wrappingLabel("");
    // Recreated by every rebuild, placed on no page.
    std::unique_ptr<QPushButton> muteButton;

    LongLivedControls longLived;
    BuiltControls page;
    BuiltControls popover;
};

}  // namespace vantle
