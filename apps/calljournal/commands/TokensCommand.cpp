#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
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
#include "host/history/CallJson.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kMostDays = 36500;

std::string textOr(const Json& token, const char* member, const char* otherwise) {
    const auto found = token.find(member);
    return found != token.end() && found->is_string() ? found->get<std::string>() : otherwise;
}

class TokensCommand final : public Command {
public:
    explicit TokensCommand(CLI::App& app) {
        app.require_subcommand(1);
        m_create = addSubcommand(app, "create", "create a token and print it; it cannot be printed again");
        m_create->add_option("name", m_name, "a name for the program or the person that gets it")
            ->type_name("NAME")
            ->required();
        m_create
            ->add_option("--scope", m_scope,
                         "read; write (also changes and calls); admin (everything); metrics only [read]")
            ->type_name("SCOPE")
            ->check(CLI::IsMember({"read", "write", "admin", "metrics"}));
        m_create->add_option("--line", m_line, "the only line that it is valid for [all]")
            ->type_name("DEVICE");
        m_create->add_option("--days", m_days, "the number of days after which it expires [never]")
            ->type_name("N")
            ->check(CLI::Range(1, kMostDays));
        m_created.addTo(*m_create);
        m_list = addSubcommand(app, "list", "print the tokens without their secrets");
        m_output.addTo(*m_list);
        m_revoke = addSubcommand(app, "revoke", "revoke tokens; their event streams end within a second");
        m_revoke->add_option("name", m_names, "the name of a token")->type_name("NAME...")->required();
        m_confirmation.addTo(*m_revoke);
    }

    int run(const CommonOptions& common) override {
        host::ApiClient client(common.server());
        if (m_create->parsed()) {
            return create(client);
        }
        return m_list->parsed() ? list(client) : revoke(client);
    }

private:
    /// Options of all commands ("--data") may follow the options of this one.
    static CLI::App* addSubcommand(CLI::App& app, const char* name, const char* help) {
        CLI::App* const sub = app.add_subcommand(name, help);
        sub->fallthrough();
        return sub;
    }

    int create(host::ApiClient& client) const {
        Json wanted{{"name", m_name}, {"scope", m_scope}};
        if (!m_line.empty()) {
            wanted["line"] = m_line;
        }
        if (m_days > 0) {
            const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
            wanted["expires"] = host::utcText(now + std::chrono::days(m_days));
        }
        const Json token = client.post({"tokens"}, wanted);
        if (m_created.isCsv()) {
            std::cout << csvTable(
                {"NAME", "SCOPE", "LINE", "EXPIRES", "TOKEN"},
                {{false,
                  {textIn(token, "name"), textIn(token, "scope"), textOr(token, "line", "all"),
                   textOr(token, "expires", "never"), textIn(token, "token")}}});
        } else {
            std::cout << (m_created.isJson() ? host::jsonText(token) : textIn(token, "token")) << "\n";
        }
        return statusOfOutput();
    }

    int list(host::ApiClient& client) const {
        const Json response = client.get({"tokens"});
        if (m_output.isJson()) {
            std::cout << host::jsonText(response) << "\n";
            return statusOfOutput();
        }
        std::vector<TableRow> rows;
        for (const Json& token : response.at("tokens")) {
            const std::string expires = textOr(token, "expires", "never");
            rows.push_back({false,
                            {textIn(token, "name"), textIn(token, "scope"), textOr(token, "line", "all"),
                             textIn(token, "created"), token.value("expired", false) ? "expired" : expires}});
        }
        const std::vector<std::string> titles{"NAME", "SCOPE", "LINE", "CREATED", "EXPIRES"};
        if (m_output.isCsv()) {
            std::cout << csvTable(titles, rows);
        } else {
            std::cout << (rows.empty() ? "no named tokens\n"
                                       : tableText(titles, rows, {terminalWidth(), {0}, isColoured()}));
        }
        return statusOfOutput();
    }

    int revoke(host::ApiClient& client) const {
        const Json tokens = client.get({"tokens"}).at("tokens");
        if (!m_confirmation.isGiven(m_names.size() == 1
                                        ? "Revoke the token " + m_names.front() + "?"
                                        : "Revoke " + std::to_string(m_names.size()) + " tokens?")) {
            return Confirmation::refused();
        }
        bool isEachKnown = true;
        for (const std::string& name : m_names) {
            const auto found = std::find_if(tokens.begin(), tokens.end(),
                                            [&name](const Json& each) { return each.at("name") == name; });
            if (found == tokens.end()) {
                std::cerr << "calljournal: there is no token " << host::printable(name) << std::endl;
                isEachKnown = false;
                continue;
            }
            client.remove({"tokens", std::to_string(found->at("id").get<std::int64_t>())}, {});
            std::cout << "the token " << host::printable(name) << " is revoked\n";
        }
        return statusOfOutput(isEachKnown);
    }

    CLI::App* m_create = nullptr;
    CLI::App* m_list = nullptr;
    CLI::App* m_revoke = nullptr;
    std::string m_name;
    std::string m_scope = "read";
    std::string m_line;
    int m_days = 0;
    std::vector<std::string> m_names;
    OutputOption m_created;
    OutputOption m_output;
    Confirmation m_confirmation;
};

}  // namespace

std::unique_ptr<Command> makeTokensCommand(CLI::App& app) {
    return std::make_unique<TokensCommand>(app);
}

}  // namespace calljournal
