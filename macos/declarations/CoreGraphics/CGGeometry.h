// Points, sizes and rectangles. Stands for <CoreGraphics/CGGeometry.h>.
#pragma once

#include <CoreGraphics/CGBase.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct CGPoint {
    CGFloat x;
    CGFloat y;
} CGPoint;

typedef struct CGSize {
    CGFloat width;
    CGFloat height;
} CGSize;

typedef struct CGRect {
    CGPoint origin;
    CGSize size;
} CGRect;

CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height);

#ifdef __cplusplus
}
#endif
