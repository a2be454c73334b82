// Sets one display's brightness the way the program does, with the settings under
// XDG_CONFIG_HOME, then waits to be killed, so that a test can end it as a crash would.
//   brightness_command DISPLAY-ID LEVEL
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/platform.h"
#include "services/standard_defaults.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: brightness_command DISPLAY-ID LEVEL\n");
        return 2;
    }
    const auto display = static_cast<std::uint32_t>(std::stoul(argv[1]));
    const float level = std::strtof(argv[2], nullptr);
    int toolkitArgc = 1;
    const auto platform = vantle::makePlatform(toolkitArgc, argv, vantle::standardDefaults());
    const bool written = platform->displays().brightness().write(display, level);
    std::printf("%s\n", written ? "written" : "refused");
    std::fflush(stdout);
    for (;;) {
        ::pause();
    }
}
