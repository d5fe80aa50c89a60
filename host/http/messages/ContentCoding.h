#pragma once

#include <string>

#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

// The content coding "gzip" (RFC 9110). Pure functions; any thread may call.
namespace host {

/// True if the client accepts it ("Accept-Encoding: gzip, br").
[[nodiscard]] bool acceptsGzip(const HttpRequest& request);
/// Throws `std::bad_alloc`.
[[nodiscard]] std::string gzipped(const std::string& text);
/// Compresses the body if it is JSON of more than 1 KiB and the client accepts that. Of such a body, the
/// response says that it depends on the client.
void compressJson(const HttpRequest& request, HttpResponse& response);

/// True if the client has the representation with this tag ("If-None-Match").
[[nodiscard]] bool hasEntity(const HttpRequest& request, const std::string& tag);

}  // namespace host
