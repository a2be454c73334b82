#include "dock/testing/fake_dock_tools.h"

#include <algorithm>
#include <cerrno>

#include "services/property_list_codec.h"

namespace vantle::testing {
namespace {

std::string callLine(const std::string& tool, const std::vector<std::string>& arguments) {
    std::string line = tool;
    for (const std::string& argument : arguments) {
        line += " " + (argument.find('\n') != std::string::npos ? std::string("<xml>") : argument);
    }
    return line;
}

Expected<ProcessExit> succeeded(std::string output = {}) {
    return ProcessExit{0, std::move(output), {}};
}

}  // namespace

Expected<ProcessExit> FakeDockTools::execute(const std::filesystem::path& executable,
                                             const std::vector<std::string>& arguments, ErrorOutput errorOutput) {
    std::lock_guard lock(mutex);
    const std::string tool = executable.filename().string();
    const std::string line = callLine(tool, arguments);
    calls.push_back(line);
    if (executable.parent_path() != toolDirectory() || missingTools.contains(tool)) {
        return posixError(ENOENT);
    }
    if (auto failing = failures.find(line); failing != failures.end() && failing->second > 0) {
        --failing->second;
        return ProcessExit{failureStatus, {}, errorOutput == ErrorOutput::capture ? failureText : ""};
    }
    if (tool == "defaults") {
        return defaults(arguments, errorOutput);
    }
    if (tool == "killall" && !arguments.empty()) {
        const std::string& signal = arguments.front();
        if (signal == "-STOP") {
            frozen = true;
        } else if (signal == "-CONT") {
            frozen = false;
        } else {
            restart();
        }
        return succeeded();
    }
    if (tool == "codesign") {
        return succeeded();
    }
    return ProcessExit{64, {}, errorOutput == ErrorOutput::capture ? "usage\n" : ""};
}

void FakeDockTools::setApps(PlistValue::Array list) {
    std::lock_guard lock(mutex);
    apps = std::move(list);
    dockMemory_ = apps;
}

std::vector<std::string> FakeDockTools::callsOf(const std::string& prefix) const {
    std::vector<std::string> matching;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(matching),
                 [&](const std::string& call) { return call.starts_with(prefix); });
    return matching;
}

Expected<ProcessExit> FakeDockTools::defaults(const std::vector<std::string>& arguments, ErrorOutput errorOutput) {
    const auto errorText = [&](std::string text) { return errorOutput == ErrorOutput::capture ? text : ""; };
    if (arguments.size() == 3 && arguments[0] == "export" && arguments[1] == "com.apple.dock") {
        if (failingReadings.contains(++readings)) {
            return ProcessExit{failureStatus, {}, errorText(failureText)};
        }
        if (exportOutput) {
            return succeeded(*exportOutput);
        }
        PlistValue::Array shown = apps;
        if (hiddenReadings.contains(readings) && lastAdded_) {
            std::erase(shown, *lastAdded_);
        }
        return succeeded(serializePropertyListXml(
            PlistValue(PlistValue::Dictionary{{"persistent-apps", PlistValue(shown)}, {"tilesize", PlistValue(48)}})));
    }
    if (arguments.size() >= 4 && arguments[0] == "write" && arguments[2] == "persistent-apps") {
        frozenAtWrites.push_back(frozen);
        std::optional<PlistValue> value = parsePropertyList(arguments.back());
        if (!value) {
            return ProcessExit{1, {}, errorText("not a property list\n")};
        }
        if (arguments[3] == "-array-add") {
            apps.push_back(*value);
            lastAdded_ = *value;
        } else if (value->asArray() != nullptr) {
            apps = *value->asArray();
        }
        return succeeded();
    }
    return ProcessExit{64, {}, errorText("usage\n")};
}

void FakeDockTools::restart() {
    frozen = false;
    ++restarts;
    if (droppingRestarts > 0) {
        --droppingRestarts;
        apps = dockMemory_;
    }
    dockMemory_ = apps;
}

}  // namespace vantle::testing
