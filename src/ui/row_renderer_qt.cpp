#include "ui/row_renderer_qt.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "ui/brand_qt.h"
#include "ui/text_colour_qt.h"

namespace vantle {
namespace {

QString qt(const std::string& text) {
    return QString::fromStdString(text);
}

QFont fontOf(double size, bool bold) {
    QFont font;
    // The sizes are the points of the original design, where a point is one logical pixel.
    font.setPixelSize(static_cast<int>(size));
    font.setBold(bold);
    return font;
}

}  // namespace

QLabel* makeUnplacedLabel(const std::string& text, double size, bool bold) {
    auto* label = new QLabel(qt(text));
    label->setWordWrap(true);
    label->setFont(fontOf(size, bold));
    return label;
}

QLabel* makeLabel(const std::string& text, double size, bool bold) {
    QLabel* label = makeUnplacedLabel(text, size, bold);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QWidget* LongLivedControls::widgetOf(Field field) const {
    switch (field) {
    case Field::loginToggle: return loginToggle;
    case Field::loginStatus: return loginStatus;
    case Field::linked: return linked;
    case Field::keyboardState: return keyboardState;
    case Field::audioWarning: return audioWarning;
    case Field::softwareToggle: return softwareToggle;
    case Field::automaticUpdates: return automaticUpdates;
    case Field::updateMessage: return updateMessage;
    case Field::message: return message;
    default: return nullptr;
    }
}

void LongLivedControls::detachAll() {
    for (QWidget* widget : std::initializer_list<QWidget*>{loginToggle, loginStatus, linked, keyboardState, audioWarning,
                                                           softwareToggle, automaticUpdates, updateMessage, message}) {
        if (widget != nullptr) {
            widget->setParent(shelf);
        }
    }
}

QWidget* RowRenderer::render(const std::vector<Row>& rows, const Margins& margins, BuiltControls& built) {
    auto* content = new QWidget;
    auto* stack = new QVBoxLayout(content);
    stack->setContentsMargins(margins.leading, margins.top, margins.trailing, margins.bottom);
    stack->setSpacing(margins.spacing);
    for (const Row& row : rows) {
        if (row.kind == RowKind::section && stack->count() > 0) {
            // A section stands apart from what comes before it.
            stack->addSpacing(28 - margins.spacing);
        }
        QWidget* widget = make(row, built);
        if (widget == nullptr) {
            continue;
        }
        const bool stretches = row.fullWidth || row.kind == RowKind::label || row.kind == RowKind::section ||
                               row.kind == RowKind::slider || row.kind == RowKind::horizontal ||
                               row.kind == RowKind::existing || row.kind == RowKind::pageSelector;
        stack->addWidget(widget, 0, stretches ? Qt::Alignment() : Qt::AlignLeft);
        if (row.spacingAfter) {
            stack->addSpacing(static_cast<int>(*row.spacingAfter) - margins.spacing);
        }
    }
    stack->addStretch(1);
    return content;
}

QWidget* RowRenderer::horizontal(const Row& row, BuiltControls& built) {
    auto* widget = new QWidget;
    auto* layout = new QHBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(static_cast<int>(row.spacing));
    for (const Row& child : row.children) {
        if (child.kind == RowKind::flexibleSpace) {
            layout->addStretch(1);
            continue;
        }
        QWidget* made = make(child, built);
        if (made == nullptr) {
            continue;
        }
        if (row.fillEqually) {
            if (auto* button = qobject_cast<QPushButton*>(made)) {
                built.bottomRowButtons.push_back(button);
            }
            made->setSizePolicy(QSizePolicy::Expanding, made->sizePolicy().verticalPolicy());
            layout->addWidget(made, 1);
        } else {
            layout->addWidget(made, 0, row.centredVertically ? Qt::AlignVCenter : Qt::Alignment());
        }
    }
    if (!row.fillEqually && std::none_of(row.children.begin(), row.children.end(),
                                         [](const Row& child) { return child.kind == RowKind::flexibleSpace; })) {
        layout->addStretch(1);
    }
    return widget;
}

QWidget* RowRenderer::make(const Row& row, BuiltControls& built) {
    // The controls outlive this renderer: they keep a copy of the action, never the renderer.
    const std::function<void(const ActionEvent&)> act = act_;
    switch (row.kind) {
    case RowKind::horizontal:
        return horizontal(row, built);
    case RowKind::brandMark:
        return brandSymbol(static_cast<int>(row.size), resources_ / "OrlendLogo.png");
    case RowKind::helpButton: {
        auto* button = new QToolButton;
        button->setText(QStringLiteral("?"));
        button->setToolTip(qt(row.text));
        button->setAccessibleName(qt(row.text));
        button->setFixedSize(24, 24);
        QObject::connect(button, &QToolButton::clicked, button, [act] { act({Action::showHelp, std::nullopt, 0, {}}); });
        return button;
    }
    case RowKind::flexibleSpace: {
        auto* space = new QWidget;
        space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
        return space;
    }
    case RowKind::pageSelector: {
        auto* selector = new QTabBar;
        selector->setExpanding(true);
        selector->setDrawBase(false);
        for (const std::string& segment : row.segments) {
            selector->addTab(qt(segment));
        }
        selector->setCurrentIndex(row.selected);
        QObject::connect(selector, &QTabBar::currentChanged, selector, [act](int index) {
            act({Action::changeSettingsPage, std::nullopt, static_cast<double>(index), {}});
        });
        return selector;
    }
    case RowKind::section:
        return makeLabel(row.text, 17, true);
    case RowKind::label: {
        QLabel* label = makeLabel(row.text, row.fontSize, row.bold);
        if (row.field == Field::quickVolumeLabel) {
            built.quickVolumeLabel = label;
        } else if (row.field == Field::quickDisplayLabel && row.displayId) {
            built.quickDisplayLabels[*row.displayId] = label;
        }
        return label;
    }
    case RowKind::button: {
        auto* button = new QPushButton(qt(row.text));
        button->setEnabled(row.enabled);
        if (row.fontSize != 13) {
            button->setFont(fontOf(row.fontSize, false));
        }
        if (row.height) {
            button->setFixedHeight(static_cast<int>(*row.height));
        }
        const Action action = row.action;
        QObject::connect(button, &QPushButton::clicked, button, [act, action] { act({action, std::nullopt, 0, {}}); });
        switch (row.field) {
        case Field::loginSettingsButton: built.loginSettingsButton = button; break;
        case Field::keyboardButton: built.keyboardButton = button; break;
        case Field::updateButton: built.updateButton = button; break;
        case Field::quickMute: built.quickMute = button; break;
        default: break;
        }
        return button;
    }
    case RowKind::slider: {
        auto* slider = new QSlider(Qt::Horizontal);
        slider->setRange(static_cast<int>(row.minimum), static_cast<int>(row.maximum));
        slider->setValue(static_cast<int>(row.value));
        slider->setTracking(row.continuous);
        const Action action = row.action;
        const std::optional<std::uint32_t> display = row.displayId;
        QObject::connect(slider, &QSlider::valueChanged, slider, [act, action, display](int value) {
            act({action, display, static_cast<double>(value), {}});
        });
        if (row.field == Field::quickVolume) {
            built.quickVolume = slider;
        } else if (row.field == Field::quickDisplay && row.displayId) {
            built.quickDisplays[*row.displayId] = slider;
        }
        return slider;
    }
    case RowKind::existing: {
        QWidget* widget = longLived_.widgetOf(row.field);
        if (widget == nullptr) {
            return nullptr;
        }
        if (auto* box = qobject_cast<QCheckBox*>(widget); box != nullptr && row.checked) {
            const QSignalBlocker quiet(box);
            box->setChecked(*row.checked);
        }
        if (auto* label = qobject_cast<QLabel*>(widget)) {
            label->setTextInteractionFlags(Qt::TextSelectableByMouse);
            if (row.field == Field::message) {
                label->clear();
            }
            if (row.colour) {
                paintText(*label, *row.colour);
            }
        }
        widget->setVisible(!row.hidden.value_or(false));
        return widget;
    }
    case RowKind::languagePopUp: {
        auto* menu = new QComboBox;
        for (const MenuItem& item : row.items) {
            menu->addItem(qt(item.title), qt(item.value));
        }
        menu->setCurrentIndex(row.selected);
        QObject::connect(menu, &QComboBox::activated, menu, [act, menu](int index) {
            act({Action::changeLanguage, std::nullopt, static_cast<double>(index), menu->itemData(index).toString().toStdString()});
        });
        built.languageMenu = menu;
        return menu;
    }
    case RowKind::logo:
        return makerLogo(resources_ / "OrlendLogo.png");
    }
    return nullptr;
}

}  // namespace vantle
