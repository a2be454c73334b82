// Core Foundation's base types and its reference counting.
#pragma once

#include <MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef long CFIndex;
typedef unsigned long CFOptionFlags;
typedef unsigned long CFTypeID;
typedef unsigned long CFHashCode;
typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;

typedef struct {
    CFIndex location;
    CFIndex length;
} CFRange;

// Any of the property-list types: string, number, Boolean, date, data, array, dictionary.
typedef CFTypeRef CFPropertyListRef;

extern const CFAllocatorRef kCFAllocatorDefault;

CFTypeRef CFRetain(CFTypeRef cf);
void CFRelease(CFTypeRef cf);
// Compare with the type function of each kind, such as CFStringGetTypeID().
CFTypeID CFGetTypeID(CFTypeRef cf);

#ifdef __cplusplus
}
#endif
