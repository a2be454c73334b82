#include "keys/osd_panel_qt.h"

#include <QBitmap>
#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <map>

namespace vantle {
namespace {

// Positions inside the panel, from its top-left corner.
const QRect kSymbolRect(73, 26, 64, 64);
const QRect kTextRect(10, 105, 190, 24);
constexpr double kFirstSegmentX = 20.0;
constexpr double kSegmentPitch = 10.7;
constexpr double kSegmentWidth = 8.7;
constexpr double kSegmentTop = 151.0;
constexpr double kSegmentHeight = 9.0;

// The backdrop is always dark, as on a heads-up display, so its foreground is light whatever the
// desktop's appearance.
const QColor kBackdrop(28, 28, 30, 205);
const QColor kLabel(255, 255, 255, 235);
const QColor kQuaternaryLabel(255, 255, 255, 64);

QImage drawRoundedMask() {
    QImage mask(kOsdWidth, kOsdHeight, QImage::Format_ARGB32_Premultiplied);
    mask.fill(Qt::transparent);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRectF(0, 0, kOsdWidth, kOsdHeight), kOsdCornerRadius, kOsdCornerRadius);
    return mask;
}

// The panels are made afresh on every key press, always with the same shape and backdrop: those
// are drawn once, at the first press, and shared (Qt's images share their pixels when copied).
const QImage& roundedMask() {
    static const QImage mask = drawRoundedMask();
    return mask;
}

const QBitmap& roundedShape() {
    static const QBitmap shape = QBitmap::fromImage(roundedMask().createAlphaMask());
    return shape;
}

const QImage& tintedBackdrop() {
    static const QImage backdrop = [] {
        QImage image = roundedMask();
        QPainter tint(&image);
        tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
        tint.fillRect(image.rect(), kBackdrop);
        return image;
    }();
    return backdrop;
}

const char* themeIconName(OsdSymbol symbol) {
    switch (symbol) {
    case OsdSymbol::Brightness: return "display-brightness-symbolic";
    case OsdSymbol::Speaker: return "audio-volume-high-symbolic";
    case OsdSymbol::SpeakerMuted: return "audio-volume-muted-symbolic";
    }
    return "";
}

// The desktop's symbol for the panel, looked up in the icon theme once per symbol; null when the
// theme has none.
const QIcon& themeIcon(OsdSymbol symbol) {
    static std::map<OsdSymbol, QIcon> found;
    auto entry = found.find(symbol);
    if (entry == found.end()) {
        entry = found.emplace(symbol, QIcon::fromTheme(QString::fromLatin1(themeIconName(symbol)))).first;
    }
    return entry->second;
}

// Our own artwork, for desktops whose icon theme lacks the symbols.
void drawFallbackSymbol(QPainter& painter, OsdSymbol symbol, const QRectF& box) {
    painter.save();
    painter.translate(box.topLeft());
    painter.scale(box.width() / 48.0, box.height() / 48.0);
    painter.setPen(QPen(kLabel, 3.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(kLabel);
    if (symbol == OsdSymbol::Brightness) {
        painter.drawEllipse(QPointF(24, 24), 9, 9);
        for (int ray = 0; ray < 8; ++ray) {
            painter.save();
            painter.translate(24, 24);
            painter.rotate(45.0 * ray);
            painter.drawLine(QPointF(0, -14), QPointF(0, -19));
            painter.restore();
        }
    } else {
        QPainterPath speaker;
        speaker.moveTo(6, 18);
        speaker.lineTo(14, 18);
        speaker.lineTo(24, 9);
        speaker.lineTo(24, 39);
        speaker.lineTo(14, 30);
        speaker.lineTo(6, 30);
        speaker.closeSubpath();
        painter.drawPath(speaker);
        painter.setBrush(Qt::NoBrush);
        if (symbol == OsdSymbol::Speaker) {
            painter.drawArc(QRectF(22, 16, 12, 16), -60 * 16, 120 * 16);
            painter.drawArc(QRectF(22, 9, 20, 30), -60 * 16, 120 * 16);
        } else {
            painter.drawLine(QPointF(4, 4), QPointF(44, 44));
        }
    }
    painter.restore();
}

class QtOsdPanel final : public OsdPanel {
public:
    QtOsdPanel(const ScreenFrame& frame, const OsdContent& content)
        : widget_(std::make_unique<OsdPanelWidget>(frame, content)) {
        widget_->show();
        widget_->raise();
    }
    void orderOut() override { widget_->hide(); }
    OsdPanelWidget* widget() const { return widget_.get(); }

private:
    std::unique_ptr<OsdPanelWidget> widget_;
};

}  // namespace

OsdPanelWidget::OsdPanelWidget(const ScreenFrame& frame, const OsdContent& content)
    : content_(content), mask_(roundedMask()) {
    // Above full-screen windows, never focused, never in the way of the mouse, left alone by the
    // window manager; shown without taking the focus from the application in use.
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowTransparentForInput |
                   Qt::WindowDoesNotAcceptFocus | Qt::X11BypassWindowManagerHint | Qt::NoDropShadowWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setWindowTitle(QString::fromStdString(content.text));
    setAccessibleName(QString::fromStdString(content.description));
    setGeometry(frame.x, frame.y, frame.width, frame.height);
    // Without a compositor the window's alpha is ignored and its transparent corners would show
    // as black: the window itself is cut to the rounded shape (X Shape extension), which every X
    // server honours. With a compositor the same shape changes nothing visible.
    setMask(roundedShape());
}

void OsdPanelWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    // The backdrop: the mask's shape in the backdrop colour.
    painter.drawImage(0, 0, tintedBackdrop());

    const QIcon& icon = themeIcon(content_.symbol);
    if (!icon.isNull()) {
        icon.paint(&painter, kSymbolRect.adjusted(8, 8, -8, -8));
    } else {
        drawFallbackSymbol(painter, content_.symbol, QRectF(kSymbolRect).adjusted(8, 8, -8, -8));
    }

    QFont font = painter.font();
    font.setPixelSize(16);
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(kLabel);
    painter.drawText(kTextRect, Qt::AlignCenter, QString::fromStdString(content_.text));

    painter.setPen(Qt::NoPen);
    for (int segment = 0; segment < kOsdSegments; ++segment) {
        painter.setBrush(content_.lit[static_cast<std::size_t>(segment)] ? kLabel : kQuaternaryLabel);
        painter.drawRoundedRect(
            QRectF(kFirstSegmentX + segment * kSegmentPitch, kSegmentTop, kSegmentWidth, kSegmentHeight), 2, 2);
    }
}

std::unique_ptr<OsdPanel> QtOsdPanelFactory::show(const ScreenFrame& frame, const OsdContent& content) {
    return std::make_unique<QtOsdPanel>(frame, content);
}

OsdPanelWidget* widgetOf(OsdPanel& panel) {
    auto* qtPanel = dynamic_cast<QtOsdPanel*>(&panel);
    return qtPanel != nullptr ? qtPanel->widget() : nullptr;
}

}  // namespace vantle
