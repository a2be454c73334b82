#include "app/instance_claim.h"

namespace vantle {
namespace {

constexpr int kAttempts = 10;

}  // namespace

InstanceClaim claimSessionOrHandOver(SingleInstance& instance, std::function<void()> reopen,
                                     const std::function<void()>& pause) {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (attempt > 0) {
            pause();
        }
        if (instance.claim(reopen)) {
            return InstanceClaim::claimed;
        }
        if (instance.askRunningCopyToReopen()) {
            return InstanceClaim::handedOver;
        }
    }
    return InstanceClaim::unanswered;
}

}  // namespace vantle
