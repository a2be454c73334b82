#pragma once

#include <string>

namespace vantle {

// Writes all of text to the open file descriptor, retrying short writes and interruptions.
// False on the first real error, with errno telling which.
bool writeAll(int fd, const std::string& text);

}  // namespace vantle
