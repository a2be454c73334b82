// Booleans and numbers as objects. Stands for <CoreFoundation/CFNumber.h>.
#pragma once

#include <CoreFoundation/CFBase.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef const struct __CFBoolean* CFBooleanRef;

extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;

CFTypeID CFBooleanGetTypeID(void);
Boolean CFBooleanGetValue(CFBooleanRef boolean);

typedef const struct __CFNumber* CFNumberRef;

typedef CFIndex CFNumberType;
enum : CFNumberType {
    kCFNumberSInt64Type = 4,
    kCFNumberFloat64Type = 6,
};

CFTypeID CFNumberGetTypeID(void);
// Whether the number was made from a floating-point value.
Boolean CFNumberIsFloatType(CFNumberRef number);
// False when the value had to be rounded or cut to fit the type asked for; valuePtr is still set.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType theType, void* valuePtr);
// A new number; the caller releases it.
CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType theType, const void* valuePtr);

#ifdef __cplusplus
}
#endif
