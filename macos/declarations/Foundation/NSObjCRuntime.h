// Foundation's basic scalar types and the macros its enumerations are declared with.
#pragma once

// NSInteger and NSUInteger are the pointer-sized integers of a 64-bit process.
typedef long NSInteger;
typedef unsigned long NSUInteger;

// BOOL is a signed char on Intel Macs and a bool on Apple silicon.
#if defined(__arm64__) || defined(__aarch64__)
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
#define YES ((BOOL)1)
#define NO ((BOOL)0)

#ifdef __cplusplus
#define nil nullptr
#else
#define nil ((id)0)
#endif

// An enumeration with a fixed underlying type: `typedef NS_ENUM(NSUInteger, Name) { ... };`.
#define NS_ENUM(type, name) enum name : type name; enum name : type

// A set of option bits. In C++ the name is the integer type itself and the constants are an
// unnamed enumeration of it, so that `A | B` is again a value of the option type.
#ifdef __cplusplus
#define NS_OPTIONS(type, name) type name; enum : type
#else
#define NS_OPTIONS(type, name) enum name : type name; enum name : type
#endif
