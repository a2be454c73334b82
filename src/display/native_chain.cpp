#include "display/native_chain.h"

namespace vantle {
namespace {

constexpr std::int32_t kNoControl = 1;

}  // namespace

NativeBrightnessFunctions chainNativeControls(std::vector<NativeDisplayControl*> controls) {
    if (controls.empty()) {
        return {};
    }
    NativeBrightnessFunctions functions;
    functions.get = [controls](std::uint32_t display, float* level) -> std::int32_t {
        for (NativeDisplayControl* control : controls) {
            if (std::optional<float> value = control->get(display)) {
                *level = *value;
                return 0;
            }
        }
        return kNoControl;
    };
    functions.set = [controls](std::uint32_t display, float level) -> std::int32_t {
        for (NativeDisplayControl* control : controls) {
            if (control->get(display)) {
                return control->set(display, level) ? 0 : kNoControl;
            }
        }
        return kNoControl;
    };
    return functions;
}

}  // namespace vantle
