// The umbrella header: the frameworks under Application Services that have declarations here.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#if __has_include(<CoreGraphics/CoreGraphics.h>)
#include <CoreGraphics/CoreGraphics.h>
#endif
#if __has_include(<HIServices/HIServices.h>)
#include <HIServices/HIServices.h>
#endif
