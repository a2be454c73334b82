// Rewrites the settings file as fast as it can until it is killed, so that a test can kill it
// in the middle of a write. Each generation stores a large payload made of its own number,
// which lets the test tell a whole file from a mixture of two.
#include <cstdlib>
#include <string>

#include "services/plist_file_store_linux.h"
#include "services/user_defaults.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    vantle::PlistFileStore store(argv[1]);
    vantle::UserDefaults defaults(store);
    for (std::int64_t generation = 1;; ++generation) {
        const std::string payload(512 * 1024, static_cast<char>('a' + generation % 26));
        defaults.set("payload", payload);
        defaults.set("generation", generation);
    }
}
