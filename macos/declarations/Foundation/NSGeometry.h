// Foundation's rectangles, which are Core Graphics' own. Stands for <Foundation/NSGeometry.h>.
#pragma once

#include <CoreGraphics/CGGeometry.h>

typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;

#ifdef __cplusplus
extern "C" {
#endif

NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h);

#ifdef __cplusplus
}
#endif
