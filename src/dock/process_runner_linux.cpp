#include "dock/process_runner_linux.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "dock/process_runner_posix.h"

namespace vantle {
namespace {

// Both ends close on exec from the moment they exist, so that a tool started from another thread
// at the same moment does not inherit them and keep our reading end waiting for an end of file.
bool openClosingPipe(int ends[2], int& error) {
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        error = errno;
        return false;
    }
    return true;
}

}  // namespace

Expected<ProcessExit> PosixProcessRunner::execute(const std::filesystem::path& executable,
                                                  const std::vector<std::string>& arguments,
                                                  ErrorOutput errorOutput) {
    return spawnAndCollect(executable, arguments, errorOutput, SpawnChoices{openClosingPipe, 0});
}

}  // namespace vantle
