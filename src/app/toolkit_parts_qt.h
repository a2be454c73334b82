#pragma once

#include <memory>

#include "keys/osd_panel.h"

namespace vantle {

// The toolkit's parts that a platform takes without naming a toolkit type, for a platform file
// written in a language the toolkit's headers are not read in (Objective-C++ on macOS).

// The toolkit's application object, alive as long as the returned handle.
class ToolkitApplication {
public:
    virtual ~ToolkitApplication() = default;
};

// Made from the process's own argc and argv, which the toolkit keeps for its whole life.
std::unique_ptr<ToolkitApplication> makeToolkitApplication(int& argc, char** argv);

// The on-screen display's panels as the toolkit's translucent windows.
std::unique_ptr<OsdPanelFactory> makeToolkitOsdPanels();

}  // namespace vantle
