// The umbrella header: every AppKit part that has a declarations file here.
#pragma once

#import <Foundation/Foundation.h>
#if __has_include(<AppKit/NSEvent.h>)
#import <AppKit/NSEvent.h>
#endif
#if __has_include(<AppKit/NSRunningApplication.h>)
#import <AppKit/NSRunningApplication.h>
#endif
