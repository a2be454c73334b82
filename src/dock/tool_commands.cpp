#include "dock/tool_commands.h"

#include <cstdint>

#include "localization/localization.h"
#include "localization/utf.h"

namespace vantle {

Expected<std::string> runTool(ProcessRunner& runner, const std::filesystem::path& path,
                              const std::vector<std::string>& arguments) {
    Expected<ProcessExit> exit = runner.execute(path, arguments, ErrorOutput::capture);
    if (!exit) {
        return exit.error();
    }
    if (exit->status == 0) {
        return std::move(exit->standardOutput);
    }
    // The tool's own words are the most useful explanation, but only when they are text at all.
    std::string description =
        isValidUtf8(exit->standardError) ? std::move(exit->standardError) : L("s112");
    return CommandError{std::string(kToolDomain), exit->status, std::move(description)};
}

Expected<std::string> runDockCommand(ProcessRunner& runner, const std::filesystem::path& path,
                                     const std::vector<std::string>& arguments) {
    Expected<ProcessExit> exit = runner.execute(path, arguments, ErrorOutput::discard);
    if (!exit) {
        return exit.error();
    }
    if (exit->status == 0) {
        return std::move(exit->standardOutput);
    }
    return dockCoordinatorFailure(L("s119", static_cast<std::int32_t>(exit->status)));
}

CommandError dockCoordinatorFailure(std::string message) {
    return {std::string(kDockCoordinatorDomain), 1, std::move(message)};
}

}  // namespace vantle
