#pragma once

namespace vantle {

// The system's light or dark appearance, and the program's windows following it. The platform's
// source tells the application of each change through the callback it was made with.
class AppearanceSource {
public:
    virtual ~AppearanceSource() = default;
    // Asks the system afresh every time.
    virtual bool dark() const = 0;
    // Gives every window of the program the dark colours, or the system's light ones back.
    virtual void apply(bool dark) = 0;
};

}  // namespace vantle
