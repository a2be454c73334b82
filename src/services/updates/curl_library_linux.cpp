#include "services/updates/curl_library_linux.h"

#include <dlfcn.h>

#include "services/library_function_linux.h"

namespace vantle {
namespace {

// The options that keep a feed on https (CURLOPT_PROTOCOLS_STR and its redirect twin) came with
// libcurl 7.85.0. An older library would accept the rest and silently ignore the restriction,
// so it is refused rather than used.
constexpr unsigned int kLeastVersion = 0x075500;

// Looks up one function; the first name not found is kept in missing.
template <typename Function>
void lookUp(void* library, const char* name, Function& function, std::string& missing) {
    if (!lookUpLibraryFunction(library, name, function) && missing.empty()) {
        missing = name;
    }
}

CurlLoad failure(std::string error) {
    return CurlLoad{std::nullopt, std::move(error)};
}

}  // namespace

CurlLoad loadCurl(std::initializer_list<const char*> libraryNames) {
    // The library is never closed again: OpenSSL registers exit handlers of its own, and a
    // library unloaded under them would crash the program as it ends.
    void* library = nullptr;
    std::string loaderError;
    const char* loadedName = nullptr;
    for (const char* name : libraryNames) {
        library = dlopen(name, RTLD_NOW | RTLD_LOCAL);
        if (library != nullptr) {
            loadedName = name;
            break;
        }
        const char* reason = dlerror();
        if (loaderError.empty() && reason != nullptr) {
            loaderError = reason;
        }
    }
    if (library == nullptr) {
        return failure("libcurl could not be loaded (" + loaderError + ")");
    }

    CurlFunctions functions;
    std::string missing;
    lookUp(library, "curl_global_init", functions.globalInit, missing);
    lookUp(library, "curl_version_info", functions.versionInfo, missing);
    lookUp(library, "curl_easy_init", functions.easyInit, missing);
    lookUp(library, "curl_easy_cleanup", functions.easyCleanup, missing);
    lookUp(library, "curl_easy_setopt", functions.easySetopt, missing);
    lookUp(library, "curl_easy_strerror", functions.easyStrerror, missing);
    lookUp(library, "curl_multi_init", functions.multiInit, missing);
    lookUp(library, "curl_multi_cleanup", functions.multiCleanup, missing);
    lookUp(library, "curl_multi_add_handle", functions.multiAddHandle, missing);
    lookUp(library, "curl_multi_remove_handle", functions.multiRemoveHandle, missing);
    lookUp(library, "curl_multi_perform", functions.multiPerform, missing);
    lookUp(library, "curl_multi_poll", functions.multiPoll, missing);
    lookUp(library, "curl_multi_wakeup", functions.multiWakeup, missing);
    lookUp(library, "curl_multi_info_read", functions.multiInfoRead, missing);
    lookUp(library, "curl_multi_strerror", functions.multiStrerror, missing);
    if (!missing.empty()) {
        return failure(std::string(loadedName) + " lacks " + missing + "; libcurl 7.85.0 or newer is needed");
    }

    const curl_version_info_data* version = functions.versionInfo(CURLVERSION_NOW);
    if (version == nullptr || version->version_num < kLeastVersion) {
        const std::string found = version != nullptr && version->version != nullptr ? version->version : "unknown";
        return failure("libcurl " + found + " is too old; 7.85.0 or newer is needed");
    }
    if (const CURLcode status = functions.globalInit(CURL_GLOBAL_DEFAULT); status != CURLE_OK) {
        return failure(std::string("libcurl could not start: ") + functions.easyStrerror(status));
    }
    return CurlLoad{functions, {}};
}

const CurlLoad& processCurl() {
    // The first caller loads while any other waits (a function's static is initialised once, under
    // a lock), so libcurl's global set-up never runs beside another of its calls. Debian names the
    // OpenSSL build libcurl.so.4 and the GnuTLS build libcurl-gnutls.so.4; either will do.
    static const CurlLoad loaded = loadCurl({"libcurl.so.4", "libcurl-gnutls.so.4"});
    return loaded;
}

}  // namespace vantle
