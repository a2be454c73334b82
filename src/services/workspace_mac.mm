#include "services/workspace_mac.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

#include "services/system_settings_addresses.h"

namespace vantle {
namespace {

bool openAddress(NSURL* address) {
    return address != nil && [NSWorkspace.sharedWorkspace openURL:address];
}

NSString* text(const std::string& utf8) {
    return [NSString stringWithUTF8String:utf8.c_str()];
}

}  // namespace

bool MacWorkspace::openSettings(SettingsPlace place) {
    const SystemSettingsAddress address = systemSettingsAddress(place);
    @autoreleasepool {
        NSString* target = text(address.target);
        if (target == nil) {
            return false;
        }
        // An application opens from a file address of its bundle, which the workspace starts.
        if (address.kind == SystemSettingsAddress::Kind::applicationPath) {
            return openAddress([NSURL fileURLWithPath:target isDirectory:YES]);
        }
        return openAddress([NSURL URLWithString:target]);
    }
}

bool MacWorkspace::openUrl(const std::string& url) {
    @autoreleasepool {
        // Text that is not UTF-8 or not a valid address opens nothing.
        NSString* target = text(url);
        return target != nil && openAddress([NSURL URLWithString:target]);
    }
}

}  // namespace vantle
