// Must be accepted: the same calls as the refused files, written correctly, so that a broken
// command line cannot make those refusals look like the check working.
#include <CoreAudio/CoreAudio.h>
#include <CoreFoundation/CoreFoundation.h>

__attribute__((objc_root_class))
@interface Probe
+ (instancetype)probe;
- (void)measureLevel;
@end

bool volumeIsSettable(AudioObjectID device) {
    const AudioObjectPropertyAddress volume{0x766f6c6d, 0x6f757470, kAudioObjectPropertyElementMain};
    Boolean settable = 0;
    return AudioObjectIsPropertySettable(device, &volume, &settable) == 0 && settable != 0;
}

bool hasVolume(AudioObjectID device) {
    const AudioObjectPropertyAddress volume{0x766f6c6d, 0x6f757470, kAudioObjectPropertyElementMain};
    return AudioObjectHasProperty(device, &volume) != 0;
}

void measure() {
    [[Probe probe] measureLevel];
}
