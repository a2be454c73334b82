#pragma once

#include <QWidget>
#include <filesystem>

namespace vantle {

// The licence text in a plain, selectable, read-only view. Created once; closing only hides it.
class LicenseWindow final : public QWidget {
public:
    // An unreadable or missing text shows a short explanation in its place.
    explicit LicenseWindow(const std::filesystem::path& licenseFile);
};

}  // namespace vantle
