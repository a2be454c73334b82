// Byte buffers as objects. Stands for <CoreFoundation/CFData.h>.
#pragma once

#include <CoreFoundation/CFBase.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef const struct __CFData* CFDataRef;

CFTypeID CFDataGetTypeID(void);
CFIndex CFDataGetLength(CFDataRef theData);
const UInt8* CFDataGetBytePtr(CFDataRef theData);
// A new copy of the bytes; the caller releases it.
CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);

#ifdef __cplusplus
}
#endif
