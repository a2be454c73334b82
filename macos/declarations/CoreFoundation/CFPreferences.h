// The user's preferences: per-application keys with property-list values. Stands for
// <CoreFoundation/CFPreferences.h>.
#pragma once

#include <CoreFoundation/CFBase.h>

#ifdef __cplusplus
extern "C" {
#endif

// The running application's own domain, named by its bundle identifier.
extern const CFStringRef kCFPreferencesCurrentApplication;

// The value under key, looked up in the application's domain and then in the domains every
// application shares (where the system keeps its global settings); NULL when none has it. The
// caller releases the value.
CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef applicationID);
// Sets the key in the application's own domain, or removes it for a NULL value. The change is
// seen at once in this process; it reaches the disk at the next synchronisation.
void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef applicationID);
// Writes pending changes and reads changes made by others; false when that failed.
Boolean CFPreferencesAppSynchronize(CFStringRef applicationID);

#ifdef __cplusplus
}
#endif
