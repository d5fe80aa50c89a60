#pragma once

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "host/remote/RemoteError.h"

namespace host {

/// The server refused a request. `what()` is the message of the API, printable.
class ApiError : public RemoteError {
public:
    ApiError(int status, const std::string& message, nlohmann::ordered_json body)
        : RemoteError(message), m_status(status), m_body(std::move(body)) {}

    /// The HTTP status, 404.
    [[nodiscard]] int status() const noexcept { return m_status; }
    /// {"error":{"code","message"},...}; null if the response is no JSON.
    [[nodiscard]] const nlohmann::ordered_json& body() const noexcept { return m_body; }

private:
    int m_status;
    nlohmann::ordered_json m_body;
};

/// Where a server is, and the token for it.
struct ApiServer {
    /// "http://127.0.0.1:8080", without a slash at the end; may have a path.
    std::string url;
    /// Empty: the server needs none.
    std::string token;
    /// The directory or the URL that the user has named.
    std::string where;
    bool isLocal = true;
    /// The pin of the public key that the server must have, which then needs no certificate of an authority;
    /// empty: its certificate is checked.
    std::string pin{};
    /// The certificates of the authorities, in one file; empty for those of the system.
    std::filesystem::path authorities{};
    /// The line of the requests; empty for the one that the server chooses.
    std::string line{};

    /// The server that runs in a data directory, by DATA/api-address and DATA/api-token. Throws `RemoteError`
    /// if none runs there.
    [[nodiscard]] static ApiServer in(const std::filesystem::path& dataDirectory);
    /// A server by its http or https URL, with the token in the first line of a file; an empty path for no
    /// token, and the file with the authorities of its certificate, empty for those of the system. Throws
    /// `RemoteError` for another URL, and if the file has no token.
    [[nodiscard]] static ApiServer at(const std::string& url, const std::filesystem::path& tokenFile,
                                      const std::filesystem::path& authorities = {});
};

/// A client of the HTTP API (docs/http-api.md). It keeps one connection. One thread at a time.
///
/// All requests throw `ApiError` if the server refuses them, and `RemoteError` if it does not respond.
/// A result is the JSON of the response; null if that has no body.
class ApiClient {
public:
    using Json = nlohmann::ordered_json;
    /// The segments of a path below "/api/v1": {"lists", "missed"}. They are encoded for the URL.
    using Path = std::vector<std::string>;
    /// The parameters of the query, name and value. They are encoded for the URL.
    using Query = std::vector<std::pair<std::string, std::string>>;

    /// Connects with the first request.
    explicit ApiClient(ApiServer server);
    ~ApiClient();
    ApiClient(const ApiClient&) = delete;
    ApiClient& operator=(const ApiClient&) = delete;

    [[nodiscard]] Json get(const Path& path, const Query& query = {});
    Json put(const Path& path, const Json& body);
    Json post(const Path& path, const Json& body);
    /// POST of another type than JSON.
    Json post(const Path& path, const std::string& body, const std::string& contentType);
    /// DELETE. Sends no body if `body` is null.
    Json remove(const Path& path, const Query& query, const Json& body = nullptr);

private:
    class Impl;
    const std::unique_ptr<Impl> m_impl;
};

}  // namespace host
