#pragma once

#include "host/http/messages/HttpResponse.h"

namespace host {

/// The description of the API (openapi.json in this folder), which is compiled into the program.
[[nodiscard]] HttpResponse openApiResponse();

}  // namespace host
