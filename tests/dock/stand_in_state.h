#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantle::standin {

// The shared state of the stand-ins for the Dock and its tools, all in one folder: the tools
// themselves (links named "defaults", "killall", "codesign"), the Dock's preferences
// ("com.apple.dock.plist"), the running Dock's process id ("dock.pid"), what the Dock knew at
// its last start ("dock-memory.plist"), how often it started ("dock-starts"), the
// behaviours the test asked for ("behaviour", lines of name=value) and a log of every tool
// call ("log"). Each stand-in holds the folder's lock while it reads or changes the state.
class StateFolder {
public:
    explicit StateFolder(std::filesystem::path folder) : folder_(std::move(folder)) {}

    const std::filesystem::path& path() const { return folder_; }
    std::filesystem::path file(std::string_view name) const { return folder_ / name; }
    std::filesystem::path preferences(std::string_view domain) const { return file(std::string(domain) + ".plist"); }

    // Holds the folder's lock (an flock on "lock") for as long as it lives.
    class Lock {
    public:
        explicit Lock(const StateFolder& state);
        ~Lock();
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

    private:
        int fd_ = -1;
    };

    // A behaviour's text, or empty when it was not asked for.
    std::optional<std::string> behaviour(std::string_view name) const;
    void setBehaviour(std::string_view name, const std::string& value) const;
    // A behaviour that counts down: true (and one less left) while its count is above 0.
    bool take(std::string_view name) const;

    // A number kept in a file of its own, 0 when absent.
    int number(std::string_view name) const;
    void setNumber(std::string_view name, int value) const;

    void log(const std::string& line) const;

    // The running Dock's process id, when one has started.
    std::optional<int> dockPid() const;
    // Whether the Dock process exists and is stopped by a signal.
    bool dockStopped() const;
    // "stopped", "running" or "absent": the Dock's state for the log.
    std::string dockState() const;

private:
    std::filesystem::path folder_;
};

// Reads a whole file; empty when it cannot be read.
std::optional<std::string> readBytes(const std::filesystem::path& path);
// Writes a whole file through a temporary one renamed over it, so readers never see half.
bool replaceBytes(const std::filesystem::path& path, std::string_view bytes);

// A tool call as the log shows it: the tool's name and its arguments, any argument that is a
// whole XML document written as "<xml>".
std::string callLine(const std::string& tool, const std::vector<std::string>& arguments);

// Text that is not UTF-8, for tools told to write such error output.
inline constexpr std::string_view kInvalidUtf8 = "error \xC3\x28 \xFF\xFE\n";

}  // namespace vantle::standin
