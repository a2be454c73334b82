#include "ui/layout_rules.h"

#include <algorithm>
#include <cmath>

namespace vantle::LayoutRules {

double popoverWidth(double widestBottomButton) {
    return std::max(kPopoverMinimumWidth, 2 * widestBottomButton + kPopoverSpacing + 2 * kPopoverMargin);
}

double popoverMaximumHeight(std::optional<double> visibleHeight) {
    if (!visibleHeight) {
        return 720;
    }
    return std::max(*visibleHeight - 80, 300.0);
}

double popoverDocumentHeight(double stackFittingHeight) {
    return std::ceil(stackFittingHeight) + 2 * kPopoverMargin;
}

double popoverContentHeight(double maximumHeight, double documentHeight) {
    return std::min(maximumHeight, documentHeight);
}

PopoverSize popoverSize(double widestBottomButton, double stackFittingHeight, std::optional<double> visibleHeight) {
    const double document = popoverDocumentHeight(stackFittingHeight);
    return {popoverWidth(widestBottomButton), document,
            popoverContentHeight(popoverMaximumHeight(visibleHeight), document)};
}

double settingsContentLimit(std::optional<double> visibleHeight, double chrome) {
    return std::max(visibleHeight.value_or(900) - chrome - 40, 240.0);
}

std::optional<SettingsWindowFit> fitSettingsWindow(const SettingsWindowGeometry& geometry) {
    const double chrome = geometry.frameHeight - geometry.contentHeight;
    const double limit =
        settingsContentLimit(geometry.visible ? std::optional(geometry.visible->height) : std::nullopt, chrome);
    const double fitting = std::ceil(geometry.fittingHeight);
    // A fitting height that is not a number gives no height at all, rather than the limit.
    const double height = std::isnan(fitting) ? fitting : std::min(fitting, limit);
    if (!std::isfinite(height) || height <= 0) {
        return std::nullopt;
    }
    if (!(std::fabs(height - geometry.contentHeight) > 0.5)) {
        return std::nullopt;
    }
    // The window grows or shrinks at its bottom, so that the title bar does not jump under the
    // pointer; its top edge is only brought back within the visible area when it lies outside.
    double top = geometry.frameTop;
    if (geometry.visible) {
        top = std::max(std::min(top, geometry.visible->top + geometry.visible->height), geometry.visible->top);
    }
    return SettingsWindowFit{kSettingsWidth, height, top};
}

}  // namespace vantle::LayoutRules
