#import <Foundation/Foundation.h>

#include <cstdlib>

#include "dock/dock_platform.h"

namespace vantle {

bool dockAvailable(const ProcessRunner&) {
    // Every Mac has its Dock, whichever folder the tools are taken from.
    return true;
}

std::filesystem::path dockToolDirectory() {
    if (const char* folder = std::getenv("VANTLE_DOCK_TOOLS"); folder != nullptr && folder[0] == '/') {
        return folder;
    }
    return std::filesystem::path(kSystemToolDirectory);
}

// ~/Library/Application Support, as the system names it for this user.
std::filesystem::path applicationSupportDirectory() {
    @autoreleasepool {
        NSArray<NSString*>* found = NSSearchPathForDirectoriesInDomains(NSApplicationSupportDirectory, NSUserDomainMask, YES);
        NSString* folder = found.firstObject;
        if (folder != nil) {
            return std::filesystem::path(folder.UTF8String);
        }
        return std::filesystem::path(NSHomeDirectory().UTF8String) / "Library" / "Application Support";
    }
}

}  // namespace vantle
