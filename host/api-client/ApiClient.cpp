#include "host/api-client/ApiClient.h"

#include <fstream>
#include <string_view>

#include "host/api-client/ApiAddress.h"
#include "host/curl/CurlLibrary.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"

namespace host {
namespace {

using Json = ApiClient::Json;

/// A server that sends no byte for this long does not respond. Deleting a long history takes a while.
constexpr long kPatienceSeconds = 120;

RemoteError unreachable(const ApiServer& server) {
    if (!server.isLocal) {
        return RemoteError("cannot reach calljournal at " + server.where);
    }
    return RemoteError("cannot reach calljournal at " + server.where +
                       ": start it with `calljournal serve`, or name the data "
                       "directory of one that runs with --data");
}

std::string firstLineOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::string text;
    std::getline(file, text);
    return text;
}

std::size_t append(char* data, std::size_t size, std::size_t count, void* text) noexcept {
    static_cast<std::string*>(text)->append(data, size * count);
    return size * count;
}

/// The header lines of one request.
class HeaderLines {
public:
    HeaderLines() = default;
    HeaderLines(const HeaderLines&) = delete;
    HeaderLines& operator=(const HeaderLines&) = delete;
    ~HeaderLines() { CurlLibrary::get().freeLines(m_lines); }

    void add(const std::string& line) { m_lines = CurlLibrary::get().appendLine(m_lines, line.c_str()); }
    [[nodiscard]] curl_slist* get() const noexcept { return m_lines; }

private:
    curl_slist* m_lines = nullptr;
};

/// The message of the API, or the status if the body has none.
std::string messageOf(int status, const Json& body) {
    if (body.is_object() && body.contains("error") && body["error"].is_object()) {
        return printable(body["error"].value("message", ""));
    }
    return "calljournal responded with the HTTP status " + std::to_string(status);
}

}  // namespace

class ApiClient::Impl {
public:
    explicit Impl(ApiServer server) : m_server(std::move(server)), m_client(m_curl.init()) {
        if (m_client == nullptr) {
            throw RemoteError("cannot make an HTTP client");
        }
    }
    ~Impl() { m_curl.cleanup(m_client); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    Json send(const char* method, const Path& path, const Query& query, const std::string& body,
              const std::string& contentType) {
        const std::string url = urlOf(path, query);
        std::string received;
        HeaderLines headers;
        headers.add("Expect:");
        if (!m_server.token.empty()) {
            headers.add("Authorization: Bearer " + m_server.token);
        }
        m_curl.reset(m_client);
        set(CURLOPT_URL, url.c_str());
        set(CURLOPT_CUSTOMREQUEST, method);
        if (!contentType.empty()) {
            headers.add("Content-Type: " + contentType);
            set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
            set(CURLOPT_POSTFIELDS, body.data());
        }
        set(CURLOPT_HTTPHEADER, headers.get());
        set(CURLOPT_WRITEFUNCTION, &append);
        set(CURLOPT_WRITEDATA, &received);
        if (m_server.isLocal) {
            // A proxy that the environment names could not reach it.
            set(CURLOPT_PROXY, "");
        }
        set(CURLOPT_PROTOCOLS_STR, "http,https");
        if (!m_server.pin.empty()) {
            // The certificate need not be for the loopback address.
            set(CURLOPT_SSL_VERIFYPEER, 0L);
            set(CURLOPT_SSL_VERIFYHOST, 0L);
            set(CURLOPT_PINNEDPUBLICKEY, m_server.pin.c_str());
        } else if (!m_server.authorities.empty()) {
            set(CURLOPT_CAINFO, m_server.authorities.c_str());
        }
        set(CURLOPT_NOSIGNAL, 1L);
        set(CURLOPT_CONNECTTIMEOUT, 10L);
        set(CURLOPT_LOW_SPEED_LIMIT, 1L);
        set(CURLOPT_LOW_SPEED_TIME, kPatienceSeconds);
        check(m_curl.perform(m_client));
        return result(received);
    }

private:
    template <typename Value>
    void set(CURLoption option, Value value) {
        if (m_curl.setOption(m_client, option, value) != CURLE_OK) {
            throw RemoteError("libcurl refuses an option of a request");
        }
    }

    void check(CURLcode code) const {
        switch (code) {
            case CURLE_OK: return;
            case CURLE_COULDNT_RESOLVE_HOST:
            case CURLE_COULDNT_CONNECT: throw unreachable(m_server);
            case CURLE_OPERATION_TIMEDOUT:
                throw RemoteError("calljournal at " + m_server.url + " does not respond");
            case CURLE_PEER_FAILED_VERIFICATION:
                throw RemoteError("the certificate of " + m_server.url +
                                  " is refused: " + m_curl.errorText(code) +
                                  "; --ca-file names the authority that has signed it");
            case CURLE_SSL_CACERT_BADFILE:
                throw RemoteError("the file of --ca-file has no certificates in PEM form: " +
                                  m_server.authorities.string());
            case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
                throw RemoteError("the server at " + m_server.url + " is not the one of " + m_server.where +
                                  ": its key differs");
            default:
                throw RemoteError("the connection to calljournal at " + m_server.url +
                                  " failed: " + m_curl.errorText(code) + "; see its log");
        }
    }

    [[nodiscard]] Json result(const std::string& received) const {
        long status = 0;
        m_curl.information(m_client, CURLINFO_RESPONSE_CODE, &status);
        Json body = received.empty() ? Json() : Json::parse(received, nullptr, false);
        const bool isJson = !body.is_discarded();
        if (status < 200 || status > 299) {
            const std::string message = messageOf(static_cast<int>(status), body);
            throw ApiError(static_cast<int>(status), message, isJson ? std::move(body) : Json());
        }
        if (!isJson) {
            throw RemoteError("the response of calljournal at " + m_server.url + " is no JSON");
        }
        return body;
    }

    [[nodiscard]] std::string urlOf(const Path& path, const Query& query) const {
        std::string url = m_server.url + "/api/v1";
        if (!m_server.line.empty()) {
            url += "/lines/" + encoded(m_server.line);
        }
        for (const std::string& segment : path) {
            url += "/" + encoded(segment);
        }
        const char* between = "?";
        for (const auto& [name, value] : query) {
            url += between + encoded(name) + "=" + encoded(value);
            between = "&";
        }
        return url;
    }

    [[nodiscard]] std::string encoded(const std::string& text) const {
        if (text.empty()) {
            return {};  // for libcurl, the length 0 means "up to the first NUL"
        }
        const std::unique_ptr<char, decltype(&curl_free)> escaped(
            m_curl.escape(m_client, text.data(), static_cast<int>(text.size())), m_curl.free);
        return escaped ? std::string(escaped.get()) : std::string();
    }

    const ApiServer m_server;
    const CurlLibrary& m_curl = CurlLibrary::get();
    CURL* const m_client;
};

ApiServer ApiServer::in(const std::filesystem::path& dataDirectory) {
    ApiServer server;
    server.where = dataDirectory.string();
    const auto address = ApiAddressFile::read(dataDirectory);
    if (!address) {
        throw unreachable(server);
    }
    server.url = address->url;
    server.pin = address->pin;
    // A server with `auth = "none"` needs no token.
    server.token = firstLineOf(dataDirectory / "api-token");
    return server;
}

ApiServer ApiServer::at(const std::string& url, const std::filesystem::path& tokenFile,
                        const std::filesystem::path& authorities) {
    ApiServer server{url, {}, url, false, {}, authorities};
    while (server.url.ends_with('/')) {
        server.url.pop_back();
    }
    if (!url.starts_with("http://") && !url.starts_with("https://")) {
        throw RemoteError("the URL must begin with https:// or http://, not " + url);
    }
    if (!tokenFile.empty()) {
        server.token = firstLineOf(tokenFile);
        if (server.token.empty()) {
            throw RemoteError("there is no token in the first line of " + tokenFile.string());
        }
    }
    return server;
}

ApiClient::ApiClient(ApiServer server) : m_impl(std::make_unique<Impl>(std::move(server))) {}

ApiClient::~ApiClient() = default;

Json ApiClient::get(const Path& path, const Query& query) {
    return m_impl->send("GET", path, query, {}, {});
}

Json ApiClient::put(const Path& path, const Json& body) {
    return m_impl->send("PUT", path, {}, jsonText(body), "application/json");
}

Json ApiClient::post(const Path& path, const Json& body) {
    return post(path, jsonText(body), "application/json");
}

Json ApiClient::post(const Path& path, const std::string& body, const std::string& contentType) {
    return m_impl->send("POST", path, {}, body, contentType);
}

Json ApiClient::remove(const Path& path, const Query& query, const Json& body) {
    return body.is_null() ? m_impl->send("DELETE", path, query, {}, {})
                          : m_impl->send("DELETE", path, query, jsonText(body), "application/json");
}

}  // namespace host
