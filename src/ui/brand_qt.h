#pragma once

#include <QLabel>
#include <filesystem>

namespace vantle {

// The amber in which the maker's logo and the brand mark are drawn.
inline constexpr QRgb kBrandAmber = qRgb(230, 173, 0);

// The brand mark: the left-hand part of the maker's logo (334 of its 1996 units of width, at
// full height), drawn as one amber shape, size points square. An empty square when the logo
// cannot be loaded.
QLabel* brandSymbol(int size, const std::filesystem::path& logoFile, QWidget* parent = nullptr);

// The whole logo, amber, scaled to fit 240 × 43 points, for the about page.
QLabel* makerLogo(const std::filesystem::path& logoFile, QWidget* parent = nullptr);

}  // namespace vantle
