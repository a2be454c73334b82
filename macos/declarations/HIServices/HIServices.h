// The umbrella header: every HIServices part that has a declarations file here.
#pragma once

#if __has_include(<HIServices/AXUIElement.h>)
#include <HIServices/AXUIElement.h>
#endif
