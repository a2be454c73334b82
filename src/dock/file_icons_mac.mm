#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

#include "dock/file_icons_mac.h"

#include <system_error>

namespace vantle {

bool WorkspaceFileIcons::setIcon(std::string_view image, const std::filesystem::path& target) {
    std::error_code error;
    if (!std::filesystem::exists(target, error)) {
        return false;
    }
    @autoreleasepool {
        NSData* bytes = [[NSData alloc] initWithBytes:image.data() length:image.size()];
        NSImage* icon = [[NSImage alloc] initWithData:bytes];
        NSString* path = [NSString stringWithUTF8String:target.c_str()];
        if (icon == nil || path == nil) {
            return false;
        }
        return [NSWorkspace.sharedWorkspace setIcon:icon forFile:path options:0] == YES;
    }
}

}  // namespace vantle
