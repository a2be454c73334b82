#include "services/write_all_linux.h"

#include <unistd.h>

#include <cerrno>

namespace vantle {

bool writeAll(int fd, const std::string& text) {
    const char* data = text.data();
    std::size_t left = text.size();
    while (left > 0) {
        const ssize_t written = ::write(fd, data, left);
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        data += written;
        left -= static_cast<std::size_t>(written);
    }
    return true;
}

}  // namespace vantle
