// Must be refused: the settable query takes an out-parameter that this call leaves out.
#include <CoreAudio/CoreAudio.h>

bool volumeIsSettable(AudioObjectID device) {
    const AudioObjectPropertyAddress volume{0x766f6c6d, 0x6f757470, 0};
    return AudioObjectIsPropertySettable(device, &volume) == 0;
}
