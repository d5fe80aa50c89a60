#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>
#include <vector>

#include "apps/calljournal/client/ListClient.h"
#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/Confirmation.h"
#include "apps/calljournal/command-line/FilterOptions.h"
#include "apps/calljournal/command-line/ListOptions.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "host/api-client/ApiClient.h"

namespace calljournal {
namespace {

using Json = nlohmann::ordered_json;

/// Deletes entries of a list, or the calls that filters select.
class DeleteCommand final : public Command {
public:
    explicit DeleteCommand(CLI::App& app) {
        addListOption(app, m_list, ListOption::eOptional);
        addEntriesOption(app, m_entries, "the entries, as `list LIST --ids` shows them, or their unique ids");
        app.add_flag("--all", m_all, "delete every entry of the list");
        m_filters.addSelection(app);
        m_confirmation.addTo(app);
        app.callback([this] { checkSelection(); });
    }

    int run(const CommonOptions& common) override {
        host::ApiClient client(common.server());
        return m_filters.selectsCalls() ? deleteCalls(client) : deleteEntries(client, common);
    }

private:
    void checkSelection() const {
        if (m_filters.selectsCalls()) {
            if (m_all || !m_entries.empty()) {
                throw CLI::ValidationError("either filters, or entries, or --all, not both");
            }
        } else if (m_list.empty()) {
            throw CLI::ValidationError(
                "a list with entries or --all is missing, or a filter such as --number");
        } else if (m_entries.empty() != m_all) {
            throw CLI::ValidationError(
                m_all ? "either --all or entries, not both"
                      : "no entries are given; give their ids, or --all for all of them");
        }
    }

    int deleteCalls(host::ApiClient& client) const {
        host::ApiClient::Query query = m_filters.query();
        if (!m_list.empty()) {
            query.emplace_back("list", m_list);
        }
        if (!m_confirmation.isGiven("Delete all calls that these filters select?")) {
            return Confirmation::refused();
        }
        const auto deleted = client.remove({"calls"}, query).at("deleted").get<std::size_t>();
        std::cout << deleted << (deleted == 1 ? " call" : " calls") << " deleted" << std::endl;
        return statusOfOutput();
    }

    int deleteEntries(host::ApiClient& client, const CommonOptions& common) const {
        const ListName list = listNamed(m_list).value();
        if (m_all) {
            const auto count =
                fetchList(client, list, {.limit = 1, .search = {}})["total"].get<std::size_t>();
            if (!m_confirmation.isGiven("Delete " + host::countText(list, count) + ", with their calls?")) {
                return Confirmation::refused();
            }
            client.remove({"lists", m_list}, {{"all", "true"}});
            std::cout << host::countText(list, count) << " deleted" << std::endl;
            return statusOfOutput();
        }
        if (!m_confirmation.isGiven("Delete " + host::countText(list, m_entries.size()) +
                                    ", with their calls?")) {
            return Confirmation::refused();
        }
        Json known = Json::array();
        std::vector<std::string> unknown;
        for (const std::string& entry : m_entries) {
            if (findEntry(client, list, entry)) {
                known.push_back(entry);
            } else {
                unknown.push_back(entry);
            }
        }
        if (!known.empty()) {
            client.remove({"lists", m_list}, {}, {{"entryIds", known}});
        }
        std::cout << host::countText(list, known.size()) << " deleted" << std::endl;
        for (const std::string& entry : unknown) {
            printUnknown(entry, list, common);
        }
        return statusOfOutput(unknown.empty());
    }

    std::string m_list;
    std::vector<std::string> m_entries;
    bool m_all = false;
    FilterOptions m_filters;
    Confirmation m_confirmation;
};

}  // namespace

std::unique_ptr<Command> makeDeleteCommand(CLI::App& app) {
    return std::make_unique<DeleteCommand>(app);
}

}  // namespace calljournal
