#include "host/curl/CurlLibrary.h"

#include <dlfcn.h>

#include <string>

#include "host/remote/RemoteError.h"

namespace host {
namespace {

/// The name of its interface, which all of its versions of twenty years have.
constexpr const char* kFile = "libcurl.so.4";

class Loader {
public:
    Loader() : m_library(::dlopen(kFile, RTLD_NOW | RTLD_LOCAL)) {
        if (m_library == nullptr) {
            throw RemoteError(std::string("cannot load ") + kFile + ": " + ::dlerror());
        }
    }

    template <typename Function>
    void load(Function& function, const char* name) const {
        function = reinterpret_cast<Function>(::dlsym(m_library, name));
        if (function == nullptr) {
            throw RemoteError(std::string(kFile) + " has no function " + name);
        }
    }

private:
    /// Stays loaded.
    void* const m_library;
};

CurlLibrary loaded() {
    const Loader loader;
    CurlLibrary curl{};
    loader.load(curl.init, "curl_easy_init");
    loader.load(curl.cleanup, "curl_easy_cleanup");
    loader.load(curl.reset, "curl_easy_reset");
    loader.load(curl.setOption, "curl_easy_setopt");
    loader.load(curl.perform, "curl_easy_perform");
    loader.load(curl.information, "curl_easy_getinfo");
    loader.load(curl.errorText, "curl_easy_strerror");
    loader.load(curl.escape, "curl_easy_escape");
    loader.load(curl.free, "curl_free");
    loader.load(curl.multiInit, "curl_multi_init");
    loader.load(curl.multiCleanup, "curl_multi_cleanup");
    loader.load(curl.multiAdd, "curl_multi_add_handle");
    loader.load(curl.multiRemove, "curl_multi_remove_handle");
    loader.load(curl.multiPerform, "curl_multi_perform");
    loader.load(curl.multiPoll, "curl_multi_poll");
    loader.load(curl.multiWakeup, "curl_multi_wakeup");
    loader.load(curl.multiInformation, "curl_multi_info_read");
    loader.load(curl.appendLine, "curl_slist_append");
    loader.load(curl.freeLines, "curl_slist_free_all");
    return curl;
}

}  // namespace

const CurlLibrary& CurlLibrary::get() {
    static const CurlLibrary curl = loaded();
    return curl;
}

}  // namespace host
