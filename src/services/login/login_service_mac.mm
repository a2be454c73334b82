#include "services/login/login_service_mac.h"

#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>

#include <string>

#include "services/login/applications_folder.h"

namespace vantle {
namespace {

std::string utf8(NSString* text) {
    const char* bytes = text.UTF8String;
    return bytes != nullptr ? std::string(bytes) : std::string();
}

// The system's reason, in the user's language, for a change it refused.
LoginFailure failure(NSError* error) {
    return LoginFailure{error != nil ? utf8(error.localizedDescription) : std::string()};
}

}  // namespace

LoginItemStatus MacLoginService::status() {
    @autoreleasepool {
        // Our numbers are the system's own; a value a later system adds reads as not found.
        switch (SMAppService.mainAppService.status) {
        case SMAppServiceStatusNotRegistered:
            return LoginItemStatus::notRegistered;
        case SMAppServiceStatusEnabled:
            return LoginItemStatus::enabled;
        case SMAppServiceStatusRequiresApproval:
            return LoginItemStatus::requiresApproval;
        case SMAppServiceStatusNotFound:
            return LoginItemStatus::notFound;
        }
        return LoginItemStatus::notFound;
    }
}

std::optional<LoginFailure> MacLoginService::registerApp() {
    @autoreleasepool {
        NSError* error = nil;
        if ([SMAppService.mainAppService registerAndReturnError:&error]) {
            return std::nullopt;
        }
        return failure(error);
    }
}

std::optional<LoginFailure> MacLoginService::unregisterApp() {
    @autoreleasepool {
        NSError* error = nil;
        if ([SMAppService.mainAppService unregisterAndReturnError:&error]) {
            return std::nullopt;
        }
        return failure(error);
    }
}

bool MacLoginService::openSettings() {
    [SMAppService openSystemSettingsLoginItems];
    return true;
}

bool runningInstalledForLogin() {
    @autoreleasepool {
        const std::string bundlePath = utf8(NSBundle.mainBundle.bundlePath.stringByStandardizingPath);
        return inApplicationsFolder(bundlePath, utf8(NSHomeDirectory()));
    }
}

}  // namespace vantle
