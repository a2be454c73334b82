// The hardware layer of Core Audio: audio objects and their properties, as far as we use them.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef UInt32 AudioObjectID;
typedef UInt32 AudioObjectPropertySelector;
typedef UInt32 AudioObjectPropertyScope;
typedef UInt32 AudioObjectPropertyElement;

typedef struct AudioObjectPropertyAddress {
    AudioObjectPropertySelector mSelector;
    AudioObjectPropertyScope mScope;
    AudioObjectPropertyElement mElement;
} AudioObjectPropertyAddress;

enum : AudioObjectPropertyElement {
    kAudioObjectPropertyElementMain = 0,
};

// Status codes of the hardware layer: four-character codes, written here as their values.
enum : OSStatus {
    kAudioHardwareNoError = 0,
    kAudioHardwareUnspecifiedError = 0x77686174,           // 'what'
    kAudioHardwareUnsupportedOperationError = 0x756e6f70,  // 'unop'
};

OSStatus AudioObjectGetPropertyDataSize(AudioObjectID inObjectID, const AudioObjectPropertyAddress* inAddress,
                                        UInt32 inQualifierDataSize, const void* inQualifierData,
                                        UInt32* outDataSize);

OSStatus AudioObjectGetPropertyData(AudioObjectID inObjectID, const AudioObjectPropertyAddress* inAddress,
                                    UInt32 inQualifierDataSize, const void* inQualifierData, UInt32* ioDataSize,
                                    void* outData);

OSStatus AudioObjectSetPropertyData(AudioObjectID inObjectID, const AudioObjectPropertyAddress* inAddress,
                                    UInt32 inQualifierDataSize, const void* inQualifierData, UInt32 inDataSize,
                                    const void* inData);

Boolean AudioObjectHasProperty(AudioObjectID inObjectID, const AudioObjectPropertyAddress* inAddress);

OSStatus AudioObjectIsPropertySettable(AudioObjectID inObjectID, const AudioObjectPropertyAddress* inAddress,
                                       Boolean* outIsSettable);

#ifdef __cplusplus
}
#endif
