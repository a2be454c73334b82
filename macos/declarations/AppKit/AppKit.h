// The umbrella header: every AppKit part that has a declarations file here.
#pragma once

#import <Foundation/Foundation.h>
#if __has_include(<AppKit/NSGraphics.h>)
#import <AppKit/NSGraphics.h>
#endif
#if __has_include(<AppKit/NSEvent.h>)
#import <AppKit/NSEvent.h>
#endif
#if __has_include(<AppKit/NSRunningApplication.h>)
#import <AppKit/NSRunningApplication.h>
#endif
#if __has_include(<AppKit/NSScreen.h>)
#import <AppKit/NSScreen.h>
#endif
#if __has_include(<AppKit/NSColor.h>)
#import <AppKit/NSColor.h>
#endif
#if __has_include(<AppKit/NSResponder.h>)
#import <AppKit/NSResponder.h>
#endif
#if __has_include(<AppKit/NSWindow.h>)
#import <AppKit/NSWindow.h>
#endif
#if __has_include(<AppKit/NSPanel.h>)
#import <AppKit/NSPanel.h>
#endif
#if __has_include(<AppKit/NSWorkspace.h>)
#import <AppKit/NSWorkspace.h>
#endif
#if __has_include(<AppKit/NSAppearance.h>)
#import <AppKit/NSAppearance.h>
#endif
#if __has_include(<AppKit/NSApplication.h>)
#import <AppKit/NSApplication.h>
#endif
#if __has_include(<AppKit/NSImage.h>)
#import <AppKit/NSImage.h>
#endif
#if __has_include(<AppKit/NSView.h>)
#import <AppKit/NSView.h>
#endif
#if __has_include(<AppKit/NSStatusBar.h>)
#import <AppKit/NSStatusBar.h>
#endif
