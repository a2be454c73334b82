// Panels: auxiliary windows that may stay out of the way of the active application. Stands for
// <AppKit/NSPanel.h>.
#pragma once

#import <AppKit/NSWindow.h>

@interface NSPanel : NSWindow
@end
