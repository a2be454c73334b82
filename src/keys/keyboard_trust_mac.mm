#include "keys/keyboard_trust_mac.h"

#import <AppKit/AppKit.h>
#include <ApplicationServices/ApplicationServices.h>
#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace vantle {
namespace {

constexpr std::string_view kPrivacyDatabaseTool = "tccutil";
// The settings application, which keeps its old identifier under its new name.
NSString* const kSystemSettingsIdentifier = @"com.apple.systempreferences";

}  // namespace

bool MacKeyboardTrust::trusted(bool ask) {
    const void* keys[] = {kAXTrustedCheckOptionPrompt};
    const void* values[] = {ask ? kCFBooleanTrue : kCFBooleanFalse};
    CFDictionaryRef options = CFDictionaryCreate(kCFAllocatorDefault, keys, values, 1, &kCFTypeDictionaryKeyCallBacks,
                                                 &kCFTypeDictionaryValueCallBacks);
    const bool answer = AXIsProcessTrustedWithOptions(options) != 0;
    if (options != nullptr) {
        CFRelease(options);
    }
    return answer;
}

bool MacKeyboardTrust::settingsApplicationRunning() {
    @autoreleasepool {
        return [NSRunningApplication runningApplicationsWithBundleIdentifier:kSystemSettingsIdentifier].count > 0;
    }
}

bool MacKeyboardTrust::reset() {
    std::string bundleIdentifier;
    @autoreleasepool {
        NSString* identifier = NSBundle.mainBundle.bundleIdentifier;
        if (identifier == nil) {
            return false;  // only a program run outside its bundle has none, and it has no grant either
        }
        bundleIdentifier = identifier.UTF8String;
    }
    // The runner waits for the tool to end, so the grant is withdrawn by the time this returns
    // and the relaunched program asks afresh.
    return runTool_ && runTool_(kPrivacyDatabaseTool, {"reset", "Accessibility", bundleIdentifier});
}

}  // namespace vantle
