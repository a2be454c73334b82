// Boolean objects, as far as our files pass one as an option value.
#pragma once

#include <CoreFoundation/CFBase.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef const struct __CFBoolean* CFBooleanRef;

extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;

#ifdef __cplusplus
}
#endif
