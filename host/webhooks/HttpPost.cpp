#include "host/webhooks/HttpPost.h"

#include "host/remote/RemoteError.h"

namespace host {
namespace {

/// A receiver has no reason to respond with more.
constexpr std::size_t kMostResponse = std::size_t{64} * 1024;

}  // namespace

HttpPost::HttpPost(const CurlLibrary& curl, CURLM* transfers)
    : m_curl(curl), m_transfers(transfers), m_handle(curl.init()) {
    if (m_handle == nullptr) {
        throw RemoteError("cannot make an HTTP client");
    }
}

HttpPost::~HttpPost() {
    release();
    m_curl.cleanup(m_handle);
}

template <typename Value>
void HttpPost::set(CURLoption option, Value value) {
    if (m_curl.setOption(m_handle, option, value) != CURLE_OK) {
        throw RemoteError("libcurl refuses an option of a request");
    }
}

void HttpPost::begin(const std::string& url, const Headers& headers, std::string body, const Peer& peer) {
    m_curl.reset(m_handle);
    m_body = std::move(body);
    m_received = 0;
    m_headers = m_curl.appendLine(nullptr, "Expect:");
    for (const auto& [name, value] : headers) {
        std::string line = name;
        line += ": ";
        line += value;
        m_headers = m_curl.appendLine(m_headers, line.c_str());
    }
    set(CURLOPT_URL, url.c_str());
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(m_body.size()));
    set(CURLOPT_POSTFIELDS, m_body.data());
    set(CURLOPT_HTTPHEADER, m_headers);
    set(CURLOPT_WRITEFUNCTION, &HttpPost::discard);
    set(CURLOPT_WRITEDATA, static_cast<void*>(this));
    if (!peer.authorities.empty()) {
        set(CURLOPT_CAINFO, peer.authorities.c_str());
    }
    if (peer.isLoopback) {
        // A proxy that the environment names could not reach it.
        set(CURLOPT_PROXY, "");
    }
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_USERAGENT, "calljournal");
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
    set(CURLOPT_TIMEOUT, kLongestSeconds);
    // The end of the program does not wait for a name server.
    set(CURLOPT_QUICK_EXIT, 1L);
    if (m_curl.multiAdd(m_transfers, m_handle) != CURLM_OK) {
        throw RemoteError("libcurl refuses a request");
    }
    m_isBusy = true;
}

std::size_t HttpPost::discard(char* /*data*/, std::size_t size, std::size_t count, void* self) noexcept {
    std::size_t& received = static_cast<HttpPost*>(self)->m_received;
    received += size * count;
    return received <= kMostResponse ? size * count : 0;
}

std::string HttpPost::end(CURLcode result) {
    long status = 0;
    m_curl.information(m_handle, CURLINFO_RESPONSE_CODE, &status);
    const bool isWhole = result == CURLE_OK || (result == CURLE_WRITE_ERROR && m_received > kMostResponse);
    release();
    if (!isWhole) {
        return m_curl.errorText(result);
    }
    if (status >= 200 && status <= 299) {
        return {};
    }
    return "the receiver responds with the HTTP status " + std::to_string(status) +
           (status >= 300 && status <= 399 ? "; redirects are not followed" : "");
}

void HttpPost::release() noexcept {
    if (m_isBusy) {
        m_curl.multiRemove(m_transfers, m_handle);
        m_isBusy = false;
    }
    m_curl.freeLines(m_headers);
    m_headers = nullptr;
}

}  // namespace host
