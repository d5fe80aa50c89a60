#include "host/http/messages/HttpResponse.h"

#include <nlohmann/json.hpp>

#include "host/http/messages/HttpError.h"
#include "host/presentation/ItemJson.h"

namespace host {

HttpResponse jsonResponse(const nlohmann::ordered_json& json, int status) {
    HttpResponse response;
    response.status = status;
    response.contentType = "application/json";
    response.body = jsonText(json) + '\n';
    return response;
}

HttpResponse emptyResponse() {
    HttpResponse response;
    response.status = 204;
    return response;
}

HttpResponse errorResponse(const HttpError& error) {
    return jsonResponse({{"error", {{"code", error.code()}, {"message", error.what()}}}}, error.status());
}

}  // namespace host
