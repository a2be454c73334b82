// Events as objects, as far as our files read a system-defined event.
#pragma once

#import <Foundation/NSObject.h>
#include <CoreGraphics/CGEventTypes.h>

typedef NS_ENUM(NSUInteger, NSEventType) {
    NSEventTypeLeftMouseUp = 2,
    NSEventTypeRightMouseUp = 4,
    NSEventTypeKeyDown = 10,
    NSEventTypeKeyUp = 11,
    NSEventTypeSystemDefined = 14,
};

// Which kinds of event a control acts on; bit n stands for the event type n.
typedef NS_OPTIONS(unsigned long long, NSEventMask){
    NSEventMaskLeftMouseUp = 1ULL << NSEventTypeLeftMouseUp,
    NSEventMaskRightMouseUp = 1ULL << NSEventTypeRightMouseUp,
};

typedef NS_OPTIONS(NSUInteger, NSEventModifierFlags){
    NSEventModifierFlagControl = 1 << 18,
};

// The kind of a system-defined or application-defined event; its values depend on the type.
typedef NS_ENUM(short, NSEventSubtype){};

@interface NSEvent : NSObject
// Nil when the event has no object form.
+ (NSEvent*)eventWithCGEvent:(CGEventRef)cgEvent;
@property(readonly) NSEventType type;
@property(readonly) NSEventSubtype subtype;
// The first data word of a system-defined or application-defined event.
@property(readonly) NSInteger data1;
// The modifier keys held when the event happened.
@property(readonly) NSEventModifierFlags modifierFlags;
@end
