#include "app/toolkit_parts_qt.h"

#include <QApplication>

#include "keys/osd_panel_qt.h"

namespace vantle {
namespace {

class QtApplicationHandle final : public ToolkitApplication {
public:
    QtApplicationHandle(int& argc, char** argv) : application_(argc, argv) {}

private:
    QApplication application_;
};

}  // namespace

std::unique_ptr<ToolkitApplication> makeToolkitApplication(int& argc, char** argv) {
    return std::make_unique<QtApplicationHandle>(argc, argv);
}

std::unique_ptr<OsdPanelFactory> makeToolkitOsdPanels() {
    return std::make_unique<QtOsdPanelFactory>();
}

}  // namespace vantle
