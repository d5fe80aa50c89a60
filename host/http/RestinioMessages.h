#pragma once

#include <restinio/all.hpp>

#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

/// The HTTP library's request as one of ours: header names in lower case, repeated headers joined by ", ".
[[nodiscard]] HttpRequest requestOf(const restinio::request_t& request);
/// The same without the body.
[[nodiscard]] HttpRequest requestOf(const restinio::http_request_header_t& header);

/// Responds to the request; a response with a stream begins that stream. Call it on the loop thread, which
/// may then call the stream's callbacks. Throws what the HTTP library throws.
void send(restinio::request_t& request, HttpResponse response);

}  // namespace host
