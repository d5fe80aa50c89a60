#pragma once

#include <chrono>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <utility>
#include <vector>

#include "host/http/messages/Streaming.h"

namespace host {

class HttpError;

/// A response. A plain value.
struct HttpResponse {
    int status = 200;
    /// Empty if there is no body.
    std::string contentType;
    /// Not sent with status 304, nor to HEAD: its length is.
    std::string body;
    std::vector<std::pair<std::string, std::string>> headers;
    /// Writes a streaming (chunked) body instead of `body`; nullptr for a complete response.
    std::shared_ptr<StreamBody> stream;
    /// The response is sent so much later.
    std::chrono::milliseconds delay{0};
};

[[nodiscard]] HttpResponse jsonResponse(const nlohmann::ordered_json& json, int status = 200);
/// Status 204.
[[nodiscard]] HttpResponse emptyResponse();
/// {"error": {"code", "message"}}.
[[nodiscard]] HttpResponse errorResponse(const HttpError& error);

}  // namespace host
