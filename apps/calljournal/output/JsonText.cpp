#include "apps/calljournal/output/JsonText.h"

#include <nlohmann/json.hpp>

#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"

namespace calljournal {

std::string textIn(const nlohmann::ordered_json& object, const std::string& member) {
    const auto found = object.find(member);
    if (found == object.end() || found->is_null()) {
        return {};
    }
    return found->is_string() ? found->get<std::string>() : host::jsonText(*found);
}

std::string nameIn(const nlohmann::ordered_json& object) {
    if (std::string shown = textIn(object, "displayName"); !shown.empty()) {
        return shown;
    }
    return object.contains("name") ? textIn(object, "name")
                                   : host::fullName(textIn(object, "firstName"), textIn(object, "surname"));
}

}  // namespace calljournal
