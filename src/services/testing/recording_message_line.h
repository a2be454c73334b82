#pragma once

#include <string>
#include <vector>

#include "services/message_line.h"

namespace vantle::testing {

// Keeps every text shown on the message line, in order.
class RecordingMessageLine final : public MessageLine {
public:
    void report(const std::string& text) override { reports.push_back(text); }
    const std::string& last() const { return reports.back(); }

    std::vector<std::string> reports;
};

}  // namespace vantle::testing
