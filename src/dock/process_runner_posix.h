#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "dock/process_runner.h"

namespace vantle {

// What differs between the POSIX systems when a tool is started: how a pipe is made whose ends
// close on exec, and which extra spawn flags the system offers.
struct SpawnChoices {
    // Makes a pipe, both ends closing on exec, into ends; false with errno's value in error.
    bool (*openPipe)(int ends[2], int& error);
    // Added to the flags that reset the tool's signal mask and handlers.
    short extraFlags = 0;
};

// Starts the executable at this absolute path with the arguments (the path itself is the
// program's name), standard input from the null device, standard output through a pipe and
// standard error through another or to the null device; reads both to their ends and waits for
// the tool. This is the whole of ProcessRunner::execute on every POSIX system. Blocks the calling
// thread; several threads may call it at once.
Expected<ProcessExit> spawnAndCollect(const std::filesystem::path& executable,
                                      const std::vector<std::string>& arguments, ErrorOutput errorOutput,
                                      const SpawnChoices& choices);

}  // namespace vantle
