#pragma once

#include <string>
#include <vector>

namespace vantle {

// What one start of the program does.
enum class Mode {
    LocalizationCheck,  // "--verify-localization"
    Diagnose,           // "--diagnose"
    VerifyControls,     // "--verify-controls"
    VerifyOsd,          // "--verify-osd"
    NormalStart,        // none of the check switches
};

// The check switches are whole arguments, looked for anywhere in the list; when several are
// given the first in the order above wins.
Mode chooseMode(const std::vector<std::string>& arguments);

}  // namespace vantle
