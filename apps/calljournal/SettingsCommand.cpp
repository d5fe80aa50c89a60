#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <vector>

#include "apps/calljournal/Command.h"
#include "apps/calljournal/CommandLine.h"
#include "apps/calljournal/RemoteSettings.h"
#include "apps/calljournal/TerminalWidth.h"
#include "apps/calljournal/TextTable.h"
#include "host/management/SettingRules.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"
#include "host/remote/RemoteClient.h"
#include "platform/journal-library/ManagementMessage.h"

namespace calljournal {
namespace {

/// One text line for each setting, with its kind; printable, and cut to `width` columns.
std::string settingsTable(const std::vector<journalxml::Setting>& settings, std::size_t width) {
    std::vector<TableRow> rows;
    rows.reserve(settings.size());
    for (const journalxml::Setting& setting : settings) {
        rows.push_back(
            {false, {setting.key, setting.ofJournal ? "journal" : "phone", setting.value.value_or("")}});
    }
    return tableText({"SETTING", "OF", "VALUE"}, rows, {width, {2}});
}

/// {"KEY":"VALUE",...}, without the keys that have no value.
std::string settingsJson(const std::vector<journalxml::Setting>& settings) {
    nlohmann::ordered_json json = nlohmann::ordered_json::object();
    for (const journalxml::Setting& setting : settings) {
        if (setting.value) {
            json[setting.key] = *setting.value;
        }
    }
    return host::jsonText(json);
}

/// {"rejected":{"KEY":{"code":4,"text":"..."}}}
std::string refusalJson(const journalxml::RefusedKey& refused) {
    nlohmann::ordered_json json;
    json["rejected"][refused.key] = {{"code", refused.code}, {"text", refused.text}};
    return host::jsonText(json);
}

class SettingsCommand final : public Command {
public:
    explicit SettingsCommand(CLI::App& app) {
        app.add_option("key", m_key, "the setting to read or change; without it, all are printed")
            ->type_name("KEY");
        m_valueOption = app.add_option("value", m_value, "the new value")->type_name("VALUE");
        app.add_flag("--json", m_json, "print one JSON object");
    }

    int run(const CommonOptions& common) override {
        journalxml::ManagementRequest request{m_key, std::nullopt};
        if (changes()) {
            request.value = m_value;
        }
        host::RemoteClient client(common.dataDirectory());
        const auto response = requestSettings(client, request);
        if (response.refused) {
            refuse(*response.refused, common);
        }
        print(response, common);
        return std::cout.good() ? eDone : eFailed;
    }

private:
    [[nodiscard]] bool changes() const { return m_valueOption->count() > 0; }

    [[noreturn]] void refuse(const journalxml::RefusedKey& refused, const CommonOptions& common) const {
        if (m_json) {
            std::cout << refusalJson(refused) << std::endl;
        }
        const bool isUnknown = !changes() || !host::isUsedByJournal(refused.key);
        throw std::runtime_error(host::printable(refused.text) + (isUnknown ? hint(common) : ""));
    }

    [[nodiscard]] static std::string hint(const CommonOptions& common) {
        return "; `" + common.commandForUser("settings") + "` prints all settings";
    }

    void print(const journalxml::ManagementResponse& response, const CommonOptions& common) const {
        if (!m_key.empty() && !changes() && !response.settings.front().value) {
            throw std::runtime_error(host::printable(m_key) + " has no value; `" +
                                     common.commandForUser("settings " + m_key + " VALUE") + "` sets one");
        }
        if (m_json) {
            std::cout << settingsJson(response.settings) << std::endl;
        } else if (changes()) {
            std::cout << host::printable(m_key) << " is set to " << host::printable(m_value) << std::endl;
        } else if (!m_key.empty()) {
            std::cout << host::printable(*response.settings.front().value) << std::endl;
        } else {
            std::cout << settingsTable(response.settings, terminalWidth()) << std::flush;
        }
    }

    std::string m_key;
    std::string m_value;
    CLI::Option* m_valueOption = nullptr;
    bool m_json = false;
};

}  // namespace

std::unique_ptr<Command> makeSettingsCommand(CLI::App& app) {
    return std::make_unique<SettingsCommand>(app);
}

}  // namespace calljournal
