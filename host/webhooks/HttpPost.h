#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "host/curl/CurlLibrary.h"

namespace host {

/// The HTTP client of one webhook, which sends one message at a time over a connection that stays open.
/// Redirects are not followed, and certificates are checked. Not synchronised.
class HttpPost {
public:
    static constexpr long kConnectSeconds = 10;
    static constexpr long kLongestSeconds = 30;

    struct Peer {
        /// True if the receiver is on this machine.
        bool isLoopback = false;
        /// The file with the authorities of its certificate; empty for those of the system.
        std::string authorities;
    };

    using Headers = std::vector<std::pair<std::string, std::string>>;

    /// `transfers` is borrowed and outlives the object. Throws `RemoteError` if it cannot be made.
    HttpPost(const CurlLibrary& curl, CURLM* transfers);
    ~HttpPost();
    HttpPost(const HttpPost&) = delete;
    HttpPost& operator=(const HttpPost&) = delete;

    /// Begins to send; the caller drives the transfers. Throws `RemoteError`. Requires: it is not busy.
    void begin(const std::string& url, const Headers& headers, std::string body, const Peer& peer);
    [[nodiscard]] bool isBusy() const noexcept { return m_isBusy; }
    [[nodiscard]] CURL* handle() const noexcept { return m_handle; }

    /// Ends the transfer that libcurl has finished with that result. Returns an empty text if the receiver
    /// has accepted the message, or else what went wrong, without the URL.
    [[nodiscard]] std::string end(CURLcode result);

private:
    static std::size_t discard(char* data, std::size_t size, std::size_t count, void* self) noexcept;
    void release() noexcept;
    template <typename Value>
    void set(CURLoption option, Value value);

    const CurlLibrary& m_curl;
    CURLM* const m_transfers;
    CURL* const m_handle;
    curl_slist* m_headers = nullptr;
    std::string m_body;
    std::size_t m_received = 0;
    bool m_isBusy = false;
};

}  // namespace host
