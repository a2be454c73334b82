#pragma once

#include <functional>

#include "app/single_instance.h"

namespace vantle {

enum class InstanceClaim {
    claimed,     // this copy holds the session now
    handedOver,  // another copy holds it and has brought its settings forward
    unanswered,  // another copy holds it but does not answer
};

// Takes the session for this copy, or hands the start over to the copy that holds it. A copy
// that holds the session but does not answer is ending right now, so the session is tried again
// for a moment (ten tries with pause between them) before giving up.
InstanceClaim claimSessionOrHandOver(SingleInstance& instance, std::function<void()> reopen,
                                     const std::function<void()>& pause);

}  // namespace vantle
