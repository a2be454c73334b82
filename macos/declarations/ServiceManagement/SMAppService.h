// Registering the application to start at login (macOS 13 and later). Stands for
// <ServiceManagement/SMAppService.h>.
#pragma once

#import <Foundation/NSError.h>
#import <Foundation/NSObject.h>

typedef NS_ENUM(NSInteger, SMAppServiceStatus){
    SMAppServiceStatusNotRegistered = 0,
    SMAppServiceStatusEnabled = 1,
    // Registered, but the user has still to allow it in the login items settings.
    SMAppServiceStatusRequiresApproval = 2,
    SMAppServiceStatusNotFound = 3,
};

@interface SMAppService : NSObject
// The running application itself as a login item.
@property(class, readonly) SMAppService* mainAppService;
@property(readonly) SMAppServiceStatus status;
- (BOOL)registerAndReturnError:(NSError**)error;
- (BOOL)unregisterAndReturnError:(NSError**)error;
+ (void)openSystemSettingsLoginItems;
@end
