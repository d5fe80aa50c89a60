#include "host/http/messages/JsonBody.h"

#include <nlohmann/json.hpp>
#include <sstream>

#include "host/http/messages/HttpError.h"
#include "host/http/messages/HttpRequest.h"

namespace host {

using Json = nlohmann::ordered_json;

Json jsonObject(const HttpRequest& request, int wrongShape) {
    Json json = Json::parse(request.body, nullptr, false);
    if (json.is_discarded()) {
        throw HttpError(400, "bad-json", "the body is no JSON in UTF-8");
    }
    if (!json.is_object()) {
        throw HttpError(wrongShape, "wrong-shape", "the body must be a JSON object");
    }
    return json;
}

std::set<std::string> entryIdsIn(const HttpRequest& request, int wrongShape) {
    const Json json = jsonObject(request, wrongShape);
    const auto ids = json.find("entryIds");
    if (ids == json.end() || !ids->is_array()) {
        throw HttpError(wrongShape, "wrong-shape", R"(the body must be {"entryIds": [...]})");
    }
    std::set<std::string> entryIds;
    for (const Json& id : *ids) {
        if (!id.is_string()) {
            throw HttpError(wrongShape, "wrong-shape", "an entry id is a text");
        }
        entryIds.insert(id.get<std::string>());
    }
    return entryIds;
}

std::set<std::string> entryIdsIn(const std::string& list) {
    std::set<std::string> entryIds;
    std::istringstream ids(list + ',');
    for (std::string id; std::getline(ids, id, ',');) {
        if (id.empty()) {
            throw HttpError(400, "wrong-selection", "entryIds takes ids with a comma between them");
        }
        entryIds.insert(id);
    }
    return entryIds;
}

}  // namespace host
