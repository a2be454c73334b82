// Core Foundation strings: made from and turned into UTF-8 bytes. Stands for
// <CoreFoundation/CFString.h>.
#pragma once

#include <CoreFoundation/CFBase.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef UInt32 CFStringEncoding;

enum : CFStringEncoding {
    kCFStringEncodingUTF8 = 0x08000100,
};

CFTypeID CFStringGetTypeID(void);
// A new string; the caller releases it. NULL when the bytes are not valid in the encoding.
CFStringRef CFStringCreateWithBytes(CFAllocatorRef alloc, const UInt8* bytes, CFIndex numBytes,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation);
CFIndex CFStringGetLength(CFStringRef theString);
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);
Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize, CFStringEncoding encoding);
const char* CFStringGetCStringPtr(CFStringRef theString, CFStringEncoding encoding);

#ifdef __cplusplus
}
#endif
