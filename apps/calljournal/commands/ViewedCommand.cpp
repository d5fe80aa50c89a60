#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>
#include <vector>

#include "apps/calljournal/client/ListClient.h"
#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/ListOptions.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "host/api-client/ApiClient.h"

namespace calljournal {
namespace {

class ViewedCommand final : public Command {
public:
    explicit ViewedCommand(CLI::App& app) {
        addEntriesOption(app, m_entries, "the missed calls, as `list missed --ids` shows them");
        app.get_option("entries")->required();
    }

    int run(const CommonOptions& common) override {
        host::ApiClient client(common.server());
        // The server ignores unknown ids.
        std::vector<std::string> unknown;
        nlohmann::ordered_json known = nlohmann::ordered_json::array();
        for (const std::string& entry : m_entries) {
            if (findEntry(client, ListName::eMissed, entry)) {
                known.push_back(entry);
            } else {
                unknown.push_back(entry);
            }
        }
        client.post({"lists", "missed", "viewed"}, {{"entryIds", known}});
        std::cout << host::countText(ListName::eMissed, known.size()) << " viewed" << std::endl;
        for (const std::string& entry : unknown) {
            printUnknown(entry, ListName::eMissed, common);
        }
        return statusOfOutput(unknown.empty());
    }

private:
    std::vector<std::string> m_entries;
};

}  // namespace

std::unique_ptr<Command> makeViewedCommand(CLI::App& app) {
    return std::make_unique<ViewedCommand>(app);
}

}  // namespace calljournal
