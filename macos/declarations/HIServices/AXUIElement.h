// The accessibility trust of this process: whether the user lets it observe and filter input.
#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFDictionary.h>

#ifdef __cplusplus
extern "C" {
#endif

// The options key whose Boolean value says whether an untrusted process shows the system's
// request for the permission.
extern CFStringRef kAXTrustedCheckOptionPrompt;

Boolean AXIsProcessTrusted(void);
// Answers at once; a request it shows is answered later in the system settings.
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options);

#ifdef __cplusplus
}
#endif
