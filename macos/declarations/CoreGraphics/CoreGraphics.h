// The umbrella header: every Core Graphics part that has a declarations file here.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#if __has_include(<CoreGraphics/CGBase.h>)
#include <CoreGraphics/CGBase.h>
#endif
#if __has_include(<CoreGraphics/CGGeometry.h>)
#include <CoreGraphics/CGGeometry.h>
#endif
#if __has_include(<CoreGraphics/CGError.h>)
#include <CoreGraphics/CGError.h>
#endif
#if __has_include(<CoreGraphics/CGEventTypes.h>)
#include <CoreGraphics/CGEventTypes.h>
#endif
#if __has_include(<CoreGraphics/CGEvent.h>)
#include <CoreGraphics/CGEvent.h>
#endif
#if __has_include(<CoreGraphics/CGDirectDisplay.h>)
#include <CoreGraphics/CGDirectDisplay.h>
#endif
#if __has_include(<CoreGraphics/CGDisplayConfiguration.h>)
#include <CoreGraphics/CGDisplayConfiguration.h>
#endif
