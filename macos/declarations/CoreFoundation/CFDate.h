// Points in time. Stands for <CoreFoundation/CFDate.h>.
#pragma once

#include <CoreFoundation/CFBase.h>

#ifdef __cplusplus
extern "C" {
#endif

// Seconds since 2001-01-01 00:00:00 UTC.
typedef double CFTimeInterval;
typedef CFTimeInterval CFAbsoluteTime;

typedef const struct __CFDate* CFDateRef;

CFTypeID CFDateGetTypeID(void);
CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef theDate);
// A new date; the caller releases it.
CFDateRef CFDateCreate(CFAllocatorRef allocator, CFAbsoluteTime at);

#ifdef __cplusplus
}
#endif
