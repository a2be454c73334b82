#pragma once

#include <QImage>
#include <QWidget>

#include "keys/osd_panel.h"

namespace vantle {

// A panel of the on-screen display as a translucent, frameless Qt window: a dark rounded
// backdrop drawn through a mask image, the symbol, the text line and the sixteen segments.
class OsdPanelWidget final : public QWidget {
public:
    OsdPanelWidget(const ScreenFrame& frame, const OsdContent& content);

    // The backdrop's shape: a filled rounded rectangle over the whole panel.
    const QImage& maskImage() const { return mask_; }
    const OsdContent& content() const { return content_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    OsdContent content_;
    QImage mask_;
};

class QtOsdPanelFactory final : public OsdPanelFactory {
public:
    std::unique_ptr<OsdPanel> show(const ScreenFrame& frame, const OsdContent& content) override;
};

// The widget behind a panel made by QtOsdPanelFactory; null for any other panel.
OsdPanelWidget* widgetOf(OsdPanel& panel);

}  // namespace vantle
