#include "dock/command_error.h"

#include <system_error>

namespace vantle {

CommandError posixError(int errorNumber) {
    return {std::string(kPosixDomain), errorNumber, std::generic_category().message(errorNumber)};
}

}  // namespace vantle
