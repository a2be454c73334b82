#pragma once

#include <QImage>

#include <filesystem>

namespace vantle {

// Reads one of our own PNG files; a null image when it is missing or unreadable. The toolkit
// decodes PNG itself, and the format is named rather than guessed: a reader that may guess loads
// every image plugin (GIF, ICO, JPEG and its library) to ask each whether it knows the file,
// which costs start time and memory for files that are always PNG.
QImage readPng(const std::filesystem::path& file);

}  // namespace vantle
