#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <vector>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/Confirmation.h"
#include "apps/calljournal/command-line/OutputOption.h"
#include "apps/calljournal/output/CsvTable.h"
#include "apps/calljournal/output/JsonText.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "apps/calljournal/output/TerminalWidth.h"
#include "apps/calljournal/output/TextTable.h"
#include "host/api-client/ApiClient.h"
#include "host/management/SettingRules.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

using Json = nlohmann::ordered_json;

/// The effect of the setting, and the values that it takes.
std::string explained(const std::string& key) {
    const std::string_view meaning = host::meaningOf(key);
    const std::string_view values = host::acceptedValues(key);
    if (meaning.empty()) {
        return "Stored, without effect on the journal.";
    }
    return std::string(meaning) + (values.empty() ? "" : " Takes " + std::string(values) + ".");
}

/// One text line for each setting, with its kind and its meaning. A terminal that is too narrow for whole
/// meanings gets the advice instead.
std::string settingsTable(const Json& settings, bool asCsv, const std::string& advice) {
    std::vector<std::string> titles{"SETTING", "OF", "VALUE", "MEANING"};
    std::vector<TableRow> rows;
    rows.reserve(settings.size());
    for (const Json& setting : settings) {
        const std::string key = textIn(setting, "key");
        rows.push_back({false, {key, textIn(setting, "of"), textIn(setting, "value"), explained(key)}});
    }
    if (asCsv) {
        return csvTable(titles, rows);
    }
    const bool isNarrow = tableWidth(titles, rows) > terminalWidth();
    if (isNarrow) {
        titles.pop_back();
        for (TableRow& row : rows) {
            row.cells.pop_back();
        }
    }
    return tableText(titles, rows, {terminalWidth(), {2}, isColoured()}) + (isNarrow ? advice : "");
}

/// {"KEY":"VALUE",...}, without the keys that have no value.
std::string settingsJson(const Json& settings) {
    Json json = Json::object();
    for (const Json& setting : settings) {
        if (!setting["value"].is_null()) {
            json[textIn(setting, "key")] = setting["value"];
        }
    }
    return host::jsonText(json);
}

class SettingsCommand final : public Command {
public:
    explicit SettingsCommand(CLI::App& app) {
        app.add_option("key", m_key, "the setting to read or change; without it, all are printed")
            ->type_name("KEY");
        m_valueOption = app.add_option("value", m_value, "the new value")->type_name("VALUE");
        m_output.addTo(app);
        app.add_flag("--explain", m_explains, "print what the setting does and which values it takes")
            ->excludes(m_valueOption);
        m_confirmation.addTo(app);
    }

    int run(const CommonOptions& common) override {
        host::ApiClient client(common.server());
        if (m_explains) {
            explain(client, common);
        } else if (m_key.empty()) {
            const Json settings = client.get({"management"})["settings"];
            std::cout << (m_output.isJson()
                              ? settingsJson(settings) + "\n"
                              : settingsTable(settings, m_output.isCsv(),
                                              "`" + common.commandForUser("settings --explain") +
                                                  "` explains each setting\n"));
        } else if (changes() && deletesCalls() && !m_confirmation.isGiven("Empty the four call lists?")) {
            return Confirmation::refused();
        } else {
            print(valueOf(client, common), common);
        }
        return statusOfOutput();
    }

private:
    /// One sentence for the key, or for each one.
    void explain(host::ApiClient& client, const CommonOptions& common) const {
        if (!m_key.empty()) {
            static_cast<void>(valueOf(client, common));
            std::cout << host::printable(m_key) << ": " << explained(m_key) << "\n";
            return;
        }
        const Json settings = client.get({"management"})["settings"];
        for (const Json& setting : settings) {
            const std::string key = textIn(setting, "key");
            std::cout << host::printable(key) << ": " << explained(key) << "\n";
        }
    }

    [[nodiscard]] bool deletesCalls() const {
        return (m_key == "clear-calllog" && m_value == "true") ||
               (m_key == "call-log-enabled" && m_value == "false");
    }
    [[nodiscard]] bool changes() const { return m_valueOption->count() > 0; }

    /// Returns the value of the key after the change, if there is one; null if it has none.
    [[nodiscard]] Json valueOf(host::ApiClient& client, const CommonOptions& common) const {
        const host::ApiClient::Path path{"management", m_key};
        try {
            return (changes() ? client.put(path, {{"value", m_value}}) : client.get(path))["value"];
        } catch (const host::ApiError& error) {
            refuse(error, common);
        }
    }

    [[noreturn]] void refuse(const host::ApiError& error, const CommonOptions& common) const {
        const auto rejected = error.body().find("rejected");
        if (error.status() == 404) {
            throw std::runtime_error(std::string(error.what()) + "; `" + common.commandForUser("settings") +
                                     "` prints all settings");
        }
        if (rejected == error.body().end()) {
            throw error;
        }
        if (m_output.isJson()) {
            std::cout << host::jsonText({{"rejected", *rejected}}) << std::endl;
        }
        throw std::runtime_error(host::printable(textIn((*rejected)[m_key], "text")));
    }

    void print(const Json& value, const CommonOptions& common) const {
        const std::string key = host::printable(m_key);
        if (value.is_null()) {
            throw std::runtime_error(key + " has no value; `" +
                                     common.commandForUser("settings " + m_key + " VALUE") + "` sets one");
        }
        const std::string text = host::printable(value.get<std::string>());
        if (m_output.isJson()) {
            std::cout << host::jsonText({{m_key, value}}) << "\n";
        } else {
            std::cout << (changes() ? key + " is set to " + host::printable(m_value) : text) << "\n";
        }
    }

    std::string m_key;
    std::string m_value;
    CLI::Option* m_valueOption = nullptr;
    bool m_explains = false;
    OutputOption m_output;
    Confirmation m_confirmation;
};

}  // namespace

std::unique_ptr<Command> makeSettingsCommand(CLI::App& app) {
    return std::make_unique<SettingsCommand>(app);
}

}  // namespace calljournal
