#pragma once

// Without the checks of the types, which are macros that call the functions of the library.
#define CURL_DISABLE_TYPECHECK
#include <curl/curl.h>

namespace host {

/// The functions of libcurl that the client uses. The library is loaded by the first command that is a
/// client: it has some thirty others, which would more than double the time until the program runs.
struct CurlLibrary {
    decltype(&curl_easy_init) init;
    decltype(&curl_easy_cleanup) cleanup;
    decltype(&curl_easy_reset) reset;
    decltype(&curl_easy_setopt) setOption;
    decltype(&curl_easy_perform) perform;
    decltype(&curl_easy_getinfo) information;
    decltype(&curl_easy_strerror) errorText;
    decltype(&curl_easy_escape) escape;
    decltype(&curl_free) free;
    decltype(&curl_slist_append) appendLine;
    decltype(&curl_slist_free_all) freeLines;

    /// Thread-safe. Throws `RemoteError` if the library cannot be loaded.
    static const CurlLibrary& get();
};

}  // namespace host
