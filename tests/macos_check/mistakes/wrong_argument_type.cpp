// Must be refused: the address goes by pointer, not by value.
#include <CoreAudio/CoreAudio.h>

bool hasVolume(AudioObjectID device) {
    const AudioObjectPropertyAddress volume{0x766f6c6d, 0x6f757470, 0};
    return AudioObjectHasProperty(device, volume) != 0;
}
