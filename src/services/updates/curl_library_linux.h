#pragma once

#include <curl/curl.h>

#include <initializer_list>
#include <optional>
#include <string>

namespace vantle {

// The libcurl functions the feed fetcher uses, looked up by name. The program does not link
// libcurl: with it come TLS, Kerberos and LDAP libraries and their set-up, which would cost every
// start time and memory for a check that runs at most once a day.
struct CurlFunctions {
    decltype(&curl_global_init) globalInit = nullptr;
    decltype(&curl_version_info) versionInfo = nullptr;
    decltype(&curl_easy_init) easyInit = nullptr;
    decltype(&curl_easy_cleanup) easyCleanup = nullptr;
    decltype(&curl_easy_setopt) easySetopt = nullptr;
    decltype(&curl_easy_strerror) easyStrerror = nullptr;
    decltype(&curl_multi_init) multiInit = nullptr;
    decltype(&curl_multi_cleanup) multiCleanup = nullptr;
    decltype(&curl_multi_add_handle) multiAddHandle = nullptr;
    decltype(&curl_multi_remove_handle) multiRemoveHandle = nullptr;
    decltype(&curl_multi_perform) multiPerform = nullptr;
    decltype(&curl_multi_poll) multiPoll = nullptr;
    decltype(&curl_multi_wakeup) multiWakeup = nullptr;
    decltype(&curl_multi_info_read) multiInfoRead = nullptr;
    decltype(&curl_multi_strerror) multiStrerror = nullptr;
};

// A loaded and set-up libcurl, or a sentence saying why there is none.
struct CurlLoad {
    std::optional<CurlFunctions> functions;
    std::string error;
};

// Opens the first of libraryNames that the dynamic loader finds, looks up every function, checks
// that the library is recent enough for the options the fetcher relies on, and runs libcurl's
// global set-up. The library stays loaded for the life of the process, also after a failure.
// Not safe to run twice at the same time; processCurl() below serialises it for the program.
CurlLoad loadCurl(std::initializer_list<const char*> libraryNames);

// The process's libcurl, loaded by the first call from any thread and kept from then on; later
// calls return the same outcome at once. The first call takes some milliseconds (the library and
// its TLS library are loaded and initialised), so it is made on a transfer's own thread.
const CurlLoad& processCurl();

}  // namespace vantle
