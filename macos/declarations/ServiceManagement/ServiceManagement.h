// The umbrella header: every Service Management part that has a declarations file here.
#pragma once

#import <Foundation/Foundation.h>
#if __has_include(<ServiceManagement/SMAppService.h>)
#import <ServiceManagement/SMAppService.h>
#endif
