#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace vantle::bench {

inline int shell(const std::string& command) {
    return std::system(command.c_str());
}

// One of the project's private servers (scripts/x-server.sh, scripts/sound-server.sh), started
// in a fresh folder for a benchmark run and stopped at its end, so that a benchmark never
// touches the user's own servers.
class PrivateServer {
public:
    explicit PrivateServer(std::string script) : script_(std::move(script)) {
        std::string pattern = (std::filesystem::temp_directory_path() / "vantle-bench-XXXXXX").string();
        folder_ = ::mkdtemp(pattern.data());
        if (shell("bash " + script_ + " start " + folder_) != 0) {
            std::abort();
        }
    }
    ~PrivateServer() {
        shell("bash " + script_ + " stop " + folder_);
        std::filesystem::remove_all(folder_);
    }
    PrivateServer(const PrivateServer&) = delete;
    PrivateServer& operator=(const PrivateServer&) = delete;

    const std::string& folder() const { return folder_; }

private:
    std::string script_;
    std::string folder_;
};

}  // namespace vantle::bench
