#include "stand_in_state.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

namespace vantle::standin {
namespace {

std::map<std::string, std::string> readBehaviours(const StateFolder& state) {
    std::map<std::string, std::string> behaviours;
    std::istringstream lines(readBytes(state.file("behaviour")).value_or(""));
    for (std::string line; std::getline(lines, line);) {
        if (const std::size_t equals = line.find('='); equals != std::string::npos) {
            behaviours[line.substr(0, equals)] = line.substr(equals + 1);
        }
    }
    return behaviours;
}

void writeBehaviours(const StateFolder& state, const std::map<std::string, std::string>& behaviours) {
    std::string text;
    for (const auto& [name, value] : behaviours) {
        text += name + "=" + value + "\n";
    }
    replaceBytes(state.file("behaviour"), text);
}

}  // namespace

StateFolder::Lock::Lock(const StateFolder& state) {
    fd_ = ::open(state.file("lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd_ >= 0) {
        while (::flock(fd_, LOCK_EX) != 0 && errno == EINTR) {
        }
    }
}

StateFolder::Lock::~Lock() {
    if (fd_ >= 0) {
        ::close(fd_);
    }
}

std::optional<std::string> StateFolder::behaviour(std::string_view name) const {
    const auto behaviours = readBehaviours(*this);
    const auto found = behaviours.find(std::string(name));
    return found == behaviours.end() ? std::nullopt : std::optional(found->second);
}

void StateFolder::setBehaviour(std::string_view name, const std::string& value) const {
    auto behaviours = readBehaviours(*this);
    behaviours[std::string(name)] = value;
    writeBehaviours(*this, behaviours);
}

bool StateFolder::take(std::string_view name) const {
    auto behaviours = readBehaviours(*this);
    const auto found = behaviours.find(std::string(name));
    if (found == behaviours.end()) {
        return false;
    }
    const int left = std::atoi(found->second.c_str());
    if (left <= 0) {
        return false;
    }
    found->second = std::to_string(left - 1);
    writeBehaviours(*this, behaviours);
    return true;
}

int StateFolder::number(std::string_view name) const {
    return std::atoi(readBytes(file(name)).value_or("0").c_str());
}

void StateFolder::setNumber(std::string_view name, int value) const {
    replaceBytes(file(name), std::to_string(value));
}

void StateFolder::log(const std::string& line) const {
    std::ofstream out(file("log"), std::ios::app);
    out << line << "\n";
}

std::optional<int> StateFolder::dockPid() const {
    const std::optional<std::string> text = readBytes(file("dock.pid"));
    if (!text || text->empty()) {
        return std::nullopt;
    }
    return std::atoi(text->c_str());
}

bool StateFolder::dockStopped() const {
    return dockState() == "stopped";
}

std::string StateFolder::dockState() const {
    const std::optional<int> pid = dockPid();
    if (!pid) {
        return "absent";
    }
    // The state letter follows the command name in parentheses, which may itself hold spaces.
    const std::string stat = readBytes("/proc/" + std::to_string(*pid) + "/stat").value_or("");
    const std::size_t close = stat.rfind(')');
    if (close == std::string::npos || close + 2 >= stat.size()) {
        return "absent";
    }
    const char state = stat[close + 2];
    if (state == 'Z' || state == 'X') {
        return "absent";
    }
    return state == 'T' ? "stopped" : "running";
}

std::optional<std::string> readBytes(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

bool replaceBytes(const std::filesystem::path& path, std::string_view bytes) {
    std::filesystem::path temporary = path;
    temporary += ".new" + std::to_string(::getpid());
    {
        std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        if (!file.flush()) {
            return false;
        }
    }
    std::error_code error;
    std::filesystem::rename(temporary, path, error);
    return !error;
}

std::string callLine(const std::string& tool, const std::vector<std::string>& arguments) {
    std::string line = tool;
    for (const std::string& argument : arguments) {
        line += " " + (argument.find('\n') != std::string::npos ? std::string("<xml>") : argument);
    }
    return line;
}

}  // namespace vantle::standin
