#pragma once

#include <functional>
#include <string>
#include <vector>

#include "services/updates/update_controller.h"

namespace vantle::testing {

// Records what the update commands show; events keeps the order of everything asked.
class RecordingUpdateHost final : public UpdateHost {
public:
    void showUpdateMessage(const std::string& text) override {
        messages.push_back(text);
        events.push_back("message");
    }
    void closePopover() override { events.push_back("closePopover"); }
    void offerUpdate(const UpdateOffer& offer) override {
        offers.push_back(offer);
        events.push_back("offer");
    }

    std::vector<std::string> messages;
    std::vector<UpdateOffer> offers;
    std::vector<std::string> events;
};

}  // namespace vantle::testing
