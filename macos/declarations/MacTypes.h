// The basic integer and status types of Apple's C interfaces, as their documentation gives them
// for 64-bit targets.
#pragma once

typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef unsigned short UInt16;
typedef unsigned int UInt32;
typedef int SInt32;
typedef unsigned long long UInt64;
typedef long long SInt64;
typedef float Float32;
typedef double Float64;
typedef SInt32 OSStatus;
typedef UInt32 FourCharCode;
typedef FourCharCode OSType;

enum { noErr = 0 };
