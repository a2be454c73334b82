#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dock/command_error.h"

namespace vantle {

// Where the system tools of the Dock commands live on macOS. The folder is a setting of the
// runner so that tests can put stand-ins of the tools in its place.
inline constexpr std::string_view kSystemToolDirectory = "/usr/bin";
inline constexpr std::string_view kDefaultsTool = "defaults";
inline constexpr std::string_view kKillallTool = "killall";
inline constexpr std::string_view kCodesignTool = "codesign";

// What happens to a tool's standard error.
enum class ErrorOutput {
    discard,  // to the null device
    capture,  // through a pipe of its own, returned with the exit
};

// How a tool ended and what it printed.
struct ProcessExit {
    // The exit status; for a tool ended by a signal, the number of that signal.
    int status = 0;
    std::string standardOutput;
    std::string standardError;  // empty when discarded
};

// Runs the system tools as child processes and waits for them.
class ProcessRunner {
public:
    explicit ProcessRunner(std::filesystem::path toolDirectory) : toolDirectory_(std::move(toolDirectory)) {}
    virtual ~ProcessRunner() = default;

    const std::filesystem::path& toolDirectory() const { return toolDirectory_; }
    // The absolute path of the named tool ("defaults", "killall", "codesign").
    std::filesystem::path tool(std::string_view name) const { return toolDirectory_ / name; }

    // Starts the executable at this absolute path with the arguments (the path itself is the
    // program's name), standard input from the null device and standard output through a pipe;
    // reads the outputs to their ends and waits for the tool to end. Fails only when the tool
    // cannot be started, with the system's error. Blocks the calling thread; any thread may
    // call it, also several at once.
    virtual Expected<ProcessExit> execute(const std::filesystem::path& executable,
                                          const std::vector<std::string>& arguments, ErrorOutput errorOutput) = 0;

private:
    std::filesystem::path toolDirectory_;
};

}  // namespace vantle
