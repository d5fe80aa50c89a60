#pragma once

// Without the checks of the types, which are macros that call the functions of the library.
#define CURL_DISABLE_TYPECHECK
#include <curl/curl.h>

namespace host {

/// The functions of libcurl that the program uses. The library is loaded at the first use, by a command that
/// is a client or for webhooks: it has some thirty others, which would more than double the time until the
/// program runs.
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
    decltype(&curl_multi_init) multiInit;
    decltype(&curl_multi_cleanup) multiCleanup;
    decltype(&curl_multi_add_handle) multiAdd;
    decltype(&curl_multi_remove_handle) multiRemove;
    decltype(&curl_multi_perform) multiPerform;
    decltype(&curl_multi_poll) multiPoll;
    decltype(&curl_multi_wakeup) multiWakeup;
    decltype(&curl_multi_info_read) multiInformation;
    decltype(&curl_slist_append) appendLine;
    decltype(&curl_slist_free_all) freeLines;

    /// Thread-safe. Throws `RemoteError` if the library cannot be loaded.
    static const CurlLibrary& get();
};

}  // namespace host
