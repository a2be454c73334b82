#pragma once

#include <string>

namespace vantle {

// The settings window's one-line status: shows the outcome of the last command. An empty
// text hides the line; the window then refits to its content.
class MessageLine {
public:
    virtual ~MessageLine() = default;
    virtual void report(const std::string& text) = 0;
};

}  // namespace vantle
