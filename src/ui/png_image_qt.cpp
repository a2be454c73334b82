#include "ui/png_image_qt.h"

#include <QImageReader>

namespace vantle {

QImage readPng(const std::filesystem::path& file) {
    QImageReader reader(QString::fromStdString(file.string()), "png");
    reader.setAutoDetectImageFormat(false);
    return reader.read();
}

}  // namespace vantle
