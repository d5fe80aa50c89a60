#pragma once

#include "host/http/HttpResponse.h"

namespace host {

/// The description of the API (openapi.json in this room), which is part of the program.
[[nodiscard]] HttpResponse openApiResponse();

}  // namespace host
