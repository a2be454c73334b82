// Core Foundation strings: their length and their conversion to UTF-8 bytes.
#pragma once

#include <CoreFoundation/CFBase.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef UInt32 CFStringEncoding;

enum : CFStringEncoding {
    kCFStringEncodingUTF8 = 0x08000100,
};

CFIndex CFStringGetLength(CFStringRef theString);
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);
Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize, CFStringEncoding encoding);
const char* CFStringGetCStringPtr(CFStringRef theString, CFStringEncoding encoding);

#ifdef __cplusplus
}
#endif
