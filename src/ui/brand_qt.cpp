#include "ui/brand_qt.h"

#include <QPainter>

#include "ui/png_image_qt.h"

namespace vantle {
namespace {

// The logo is drawn as a template: only its shape counts, filled with one colour.
QImage tinted(const QImage& shape, QRgb colour) {
    QImage result(shape.size(), QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.drawImage(0, 0, shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(result.rect(), QColor(colour));
    return result;
}

QImage loadLogo(const std::filesystem::path& logoFile) {
    return readPng(logoFile).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QLabel* imageLabel(const QImage& image, QSize size, const QString& accessibleName, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setFixedSize(size);
    label->setAlignment(Qt::AlignCenter);
    label->setAccessibleName(accessibleName);
    if (!image.isNull()) {
        const qreal ratio = label->devicePixelRatioF();
        QPixmap pixmap = QPixmap::fromImage(image.scaled(size * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation));
        pixmap.setDevicePixelRatio(ratio);
        label->setPixmap(pixmap);
    }
    return label;
}

}  // namespace

QLabel* brandSymbol(int size, const std::filesystem::path& logoFile, QWidget* parent) {
    const QImage logo = loadLogo(logoFile);
    QImage mark;
    if (!logo.isNull()) {
        const int width = logo.width() * 334 / 1996;
        mark = tinted(logo.copy(0, 0, width, logo.height()), kBrandAmber);
    }
    return imageLabel(mark, QSize(size, size), QStringLiteral("Orlend Vantle"), parent);
}

QLabel* makerLogo(const std::filesystem::path& logoFile, QWidget* parent) {
    const QImage logo = loadLogo(logoFile);
    return imageLabel(logo.isNull() ? logo : tinted(logo, kBrandAmber), QSize(240, 43), QStringLiteral("Orlend"),
                      parent);
}

}  // namespace vantle
