// The umbrella header: every Core Foundation part that has a declarations file here.
#pragma once

#include <CoreFoundation/CFBase.h>
#if __has_include(<CoreFoundation/CFString.h>)
#include <CoreFoundation/CFString.h>
#endif
#if __has_include(<CoreFoundation/CFArray.h>)
#include <CoreFoundation/CFArray.h>
#endif
#if __has_include(<CoreFoundation/CFDictionary.h>)
#include <CoreFoundation/CFDictionary.h>
#endif
#if __has_include(<CoreFoundation/CFData.h>)
#include <CoreFoundation/CFData.h>
#endif
#if __has_include(<CoreFoundation/CFDate.h>)
#include <CoreFoundation/CFDate.h>
#endif
#if __has_include(<CoreFoundation/CFNumber.h>)
#include <CoreFoundation/CFNumber.h>
#endif
#if __has_include(<CoreFoundation/CFRunLoop.h>)
#include <CoreFoundation/CFRunLoop.h>
#endif
#if __has_include(<CoreFoundation/CFMachPort.h>)
#include <CoreFoundation/CFMachPort.h>
#endif
#if __has_include(<CoreFoundation/CFPreferences.h>)
#include <CoreFoundation/CFPreferences.h>
#endif
#if __has_include(<CoreFoundation/CFBundle.h>)
#include <CoreFoundation/CFBundle.h>
#endif
#if __has_include(<CoreFoundation/CFURL.h>)
#include <CoreFoundation/CFURL.h>
#endif
