#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/Confirmation.h"
#include "apps/calljournal/command-line/OutputOption.h"
#include "apps/calljournal/output/CsvTable.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "apps/calljournal/output/TerminalWidth.h"
#include "apps/calljournal/output/TextTable.h"
#include "host/api-client/ApiClient.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

using Json = nlohmann::ordered_json;

const char* stateOf(const Json& line) {
    if (line.at("removed").get<bool>()) {
        return "removed";
    }
    if (line.at("monitoring").get<bool>()) {
        return "monitored";
    }
    return line.at("connected").get<bool>() ? "not monitored" : "no link";
}

class LinesCommand final : public Command {
public:
    explicit LinesCommand(CLI::App& app) {
        app.require_subcommand(1);
        m_list = addSubcommand(app, "list", "print the lines");
        m_list->add_flag("--all", m_all, "also those that were removed and whose calls are kept");
        m_output.addTo(*m_list);
        m_add = addSubcommand(app, "add", "add a line; it is served again after a restart, too");
        m_add->add_option("device", m_device, "its number at the switch")->type_name("DEVICE")->required();
        m_add->add_option("--name", m_name, "whose telephone it is")->type_name("NAME");
        m_add->add_option("--switch", m_switch, "the name of its switch in the configuration [the first]")
            ->type_name("NAME");
        m_remove = addSubcommand(app, "remove", "end a line that was added, and keep its calls");
        m_remove->add_option("device", m_device, "its number at the switch")->type_name("DEVICE")->required();
        m_remove->add_flag("--purge", m_purge,
                           "delete its calls, contacts and settings, also of a line that was removed before");
        m_confirmation.addTo(*m_remove);
    }

    int run(const CommonOptions& common) override {
        host::ApiClient client(common.server());
        if (m_list->parsed()) {
            return list(client);
        }
        return m_add->parsed() ? add(client) : remove(client);
    }

private:
    /// Options of all commands ("--data") may follow the options of this one.
    static CLI::App* addSubcommand(CLI::App& app, const char* name, const char* help) {
        CLI::App* const sub = app.add_subcommand(name, help);
        sub->fallthrough();
        return sub;
    }

    int list(host::ApiClient& client) const {
        host::ApiClient::Query query;
        if (m_all) {
            query.emplace_back("all", "true");
        }
        const Json response = client.get({"lines"}, query);
        if (m_output.isJson()) {
            std::cout << host::jsonText(response) << "\n";
            return statusOfOutput();
        }
        std::vector<TableRow> rows;
        for (const Json& line : response.at("lines")) {
            rows.push_back({false,
                            {line.at("device").get<std::string>(), line.at("name").get<std::string>(),
                             line.at("switch").get<std::string>(), stateOf(line),
                             line.at("configured").get<bool>() ? "configuration" : "added",
                             std::to_string(line.at("unviewed").get<int>())}});
        }
        const std::vector<std::string> titles{"DEVICE", "NAME", "SWITCH", "STATE", "FROM", "UNVIEWED"};
        std::cout << (m_output.isCsv() ? csvTable(titles, rows)
                                       : tableText(titles, rows, {terminalWidth(), {1}, isColoured()}));
        return statusOfOutput();
    }

    int add(host::ApiClient& client) const {
        Json line{{"device", m_device}};
        for (const auto& [member, value] : {std::pair("name", m_name), std::pair("switch", m_switch)}) {
            if (!value.empty()) {
                line[member] = value;
            }
        }
        client.post({"lines"}, line);
        std::cout << "line " << host::printable(m_device) << " is added\n";
        return statusOfOutput();
    }

    int remove(host::ApiClient& client) const {
        if (m_purge &&
            !m_confirmation.isGiven("Delete all calls, contacts and settings of line " + m_device + "?")) {
            return Confirmation::refused();
        }
        client.remove({"lines", m_device},
                      m_purge ? host::ApiClient::Query{{"purge", "true"}} : host::ApiClient::Query());
        std::cout << "line " << host::printable(m_device)
                  << (m_purge ? " and all that was stored of it are deleted\n"
                              : " is removed; its calls are kept until `lines remove --purge`\n");
        return statusOfOutput();
    }

    CLI::App* m_list = nullptr;
    CLI::App* m_add = nullptr;
    CLI::App* m_remove = nullptr;
    std::string m_device;
    std::string m_name;
    std::string m_switch;
    bool m_all = false;
    bool m_purge = false;
    OutputOption m_output;
    Confirmation m_confirmation;
};

}  // namespace

std::unique_ptr<Command> makeLinesCommand(CLI::App& app) {
    return std::make_unique<LinesCommand>(app);
}

}  // namespace calljournal
