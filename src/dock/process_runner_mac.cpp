#include "dock/process_runner_mac.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <cerrno>

#include "dock/process_runner_posix.h"

namespace vantle {
namespace {

// macOS has no pipe2, so close-on-exec is set just after the pipe is made. Our own tools never
// see the ends anyway (the spawn flag below closes everything not handed over); the flag keeps
// them from children that other code in the process starts in that moment's gap or later.
bool openClosingPipe(int ends[2], int& error) {
    if (::pipe(ends) != 0) {
        error = errno;
        return false;
    }
    if (::fcntl(ends[0], F_SETFD, FD_CLOEXEC) != 0 || ::fcntl(ends[1], F_SETFD, FD_CLOEXEC) != 0) {
        error = errno;
        return false;
    }
    return true;
}

}  // namespace

// A tool inherits only the three descriptors it is handed: one started at the same moment from
// another thread cannot hold our pipes open.
Expected<ProcessExit> MacProcessRunner::execute(const std::filesystem::path& executable,
                                                const std::vector<std::string>& arguments, ErrorOutput errorOutput) {
    return spawnAndCollect(executable, arguments, errorOutput,
                           SpawnChoices{openClosingPipe, static_cast<short>(POSIX_SPAWN_CLOEXEC_DEFAULT)});
}

}  // namespace vantle
