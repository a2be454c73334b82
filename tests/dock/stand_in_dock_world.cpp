#include "stand_in_dock_world.h"

#include <signal.h>

#include <chrono>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "services/property_list_codec.h"

namespace vantle::testing {

StandInDockWorld::StandInDockWorld(const PlistValue::Array& apps) : state_(folder_.path() / "tools") {
    std::filesystem::create_directories(state_.path());
    std::filesystem::create_symlink(STAND_IN_DEFAULTS, state_.file("defaults"));
    std::filesystem::create_symlink(STAND_IN_KILLALL, state_.file("killall"));
    std::filesystem::create_symlink(STAND_IN_CODESIGN, state_.file("codesign"));
    writePreferences(serializePropertyListXml(PlistValue::Dictionary{
        {"persistent-apps", PlistValue(apps)},
        {"tilesize", PlistValue(48)},
        {"mru-spaces", PlistValue(false)},
    }));
    supervisor_ = std::make_unique<RunningChild>(STAND_IN_DOCK, std::vector<std::string>{"supervise", state_.path()});
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!dockRunning()) {
        if (std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error("the stand-in Dock did not start");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

StandInDockWorld::~StandInDockWorld() {
    supervisor_->killAndWait(SIGTERM);
}

std::string StandInDockWorld::preferencesBytes() const {
    return standin::readBytes(state_.preferences("com.apple.dock")).value_or("");
}

PlistValue::Array StandInDockWorld::apps() const {
    const std::optional<PlistValue> domain = parsePropertyList(preferencesBytes());
    if (!domain || domain->asDictionary() == nullptr) {
        return {};
    }
    const auto found = domain->asDictionary()->find("persistent-apps");
    if (found == domain->asDictionary()->end() || found->second.asArray() == nullptr) {
        return {};
    }
    return *found->second.asArray();
}

void StandInDockWorld::writePreferences(const std::string& bytes) const {
    const standin::StateFolder::Lock lock(state_);
    standin::replaceBytes(state_.preferences("com.apple.dock"), bytes);
}

void StandInDockWorld::set(const std::string& behaviour, const std::string& value) const {
    const standin::StateFolder::Lock lock(state_);
    state_.setBehaviour(behaviour, value);
}

void StandInDockWorld::hideAddedTileAtReadings(const std::vector<int>& readings) const {
    const standin::StateFolder::Lock lock(state_);
    std::string list = ",";
    for (const int reading : readings) {
        list += std::to_string(reading) + ",";
    }
    state_.setBehaviour("hide-at", list);
    state_.setNumber("readings", 0);
}

std::vector<std::string> StandInDockWorld::log() const {
    std::vector<std::string> lines;
    std::istringstream text(standin::readBytes(state_.file("log")).value_or(""));
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> StandInDockWorld::logOf(const std::string& prefix) const {
    std::vector<std::string> matching;
    for (const std::string& line : log()) {
        if (line.starts_with(prefix)) {
            matching.push_back(line);
        }
    }
    return matching;
}

int StandInDockWorld::dockStarts() const {
    return state_.number("dock-starts");
}

}  // namespace vantle::testing
