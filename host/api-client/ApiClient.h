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

/// A client of the HTTP API (docs/http-api.md) of the server that runs in a data directory. It keeps one
/// connection. One thread at a time.
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

    /// Reads the address and the token of the server. Connects with the first request. Throws `RemoteError`
    /// if no server runs there.
    explicit ApiClient(const std::filesystem::path& dataDirectory);
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
