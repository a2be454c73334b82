// Starting processes: the host's POSIX header, and the one addition of Apple's C library that
// our files use. Stands for <spawn.h> on macOS.
#pragma once

#include_next <spawn.h>

// A flag of posix_spawnattr_setflags: the new process keeps only the descriptors that the file
// actions give it; every other one is closed as if it had been opened close-on-exec.
#ifndef POSIX_SPAWN_CLOEXEC_DEFAULT
#define POSIX_SPAWN_CLOEXEC_DEFAULT 0x4000
#endif
