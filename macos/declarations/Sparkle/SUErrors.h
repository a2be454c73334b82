// The framework's errors. Stands for <Sparkle/SUErrors.h>.
#pragma once

#include <MacTypes.h>
#import <Foundation/NSError.h>

#ifdef __cplusplus
extern "C" {
#endif

// The domain of every error the framework makes itself.
extern NSErrorDomain const SUSparkleErrorDomain;

#ifdef __cplusplus
}
#endif

typedef NS_ENUM(OSStatus, SUError){
    // The feed named no update newer than the running version: no failure.
    SUNoUpdateError = 1001,
};
