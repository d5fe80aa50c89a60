#include "apps/calljournal/SettingsText.h"

#include <nlohmann/json.hpp>

#include "apps/calljournal/TextTable.h"
#include "host/presentation/ItemJson.h"

namespace calljournal {

std::string settingsTable(const std::vector<journalxml::Setting>& settings, std::size_t width) {
    std::vector<TableRow> rows;
    rows.reserve(settings.size());
    for (const journalxml::Setting& setting : settings) {
        rows.push_back(
            {false, {setting.key, setting.ofJournal ? "journal" : "phone", setting.value.value_or("")}});
    }
    return tableText({"SETTING", "OF", "VALUE"}, rows, {width, {2}});
}

std::string settingsJson(const std::vector<journalxml::Setting>& settings) {
    nlohmann::ordered_json json = nlohmann::ordered_json::object();
    for (const journalxml::Setting& setting : settings) {
        if (setting.value) {
            json[setting.key] = *setting.value;
        }
    }
    return host::jsonText(json);
}

std::string refusalJson(const journalxml::RefusedKey& refused) {
    nlohmann::ordered_json json;
    json["rejected"][refused.key] = {{"code", refused.code}, {"text", refused.text}};
    return host::jsonText(json);
}

}  // namespace calljournal
