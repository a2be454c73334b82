#include "app/display_backends_mac.h"

#include "display/display_services_mac.h"
#include "display/native_chain.h"
#include "display/screens_mac.h"
#include "display/shade_panel_mac.h"

namespace vantle {
namespace {

class MacDisplayBackends final : public DisplayBackends {
public:
    MacDisplayBackends(UserDefaults& defaults, const std::vector<std::string>& arguments)
        : screens_([this] { matchNativeControls(); }),
          brightness_(chainNativeControls({&displayServices_}), screens_, shades_, defaults, arguments) {
        matchNativeControls();
    }

    Brightness& brightness() override { return brightness_; }

    // Also run on the window server's own report of each change, so that the online displays
    // are known afresh whether or not the toolkit reports that change as well.
    void matchNativeControls() override { displayServices_.updateDisplays(screens_.identities()); }

    // The window server going away ends the login session, and every window with it; nothing
    // it showed needs putting back.
    void displayWentAway() override {}

    // Shades are windows of the process that made them and vanish when it ends, however it
    // ends, and the displays' own brightness is left where the user set it: an earlier copy
    // leaves nothing to undo.
    void undoDimmingOfAnEarlierCopy() override {}

private:
    // Declared before the screens, whose change reports reach it, so that it outlives them.
    DisplayServicesBrightness displayServices_;
    MacScreenSystem screens_;
    MacShadeFactory shades_;
    Brightness brightness_;
};

}  // namespace

std::unique_ptr<DisplayBackends> makeMacDisplayBackends(UserDefaults& defaults,
                                                        const std::vector<std::string>& arguments) {
    return std::make_unique<MacDisplayBackends>(defaults, arguments);
}

}  // namespace vantle
