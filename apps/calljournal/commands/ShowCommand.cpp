#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <utility>

#include "apps/calljournal/client/ListClient.h"
#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/OutputOption.h"
#include "apps/calljournal/output/EntryText.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "apps/calljournal/output/TerminalWidth.h"
#include "host/api-client/ApiClient.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

using Entry = std::pair<ListName, nlohmann::ordered_json>;

std::optional<Entry> findInAll(host::ApiClient& client, const std::string& id) {
    std::optional<Entry> found;
    forEachList([&]<typename Item>() {
        constexpr ListName kList = ListTraits<Item>::kList;
        if (!found) {
            if (auto item = findEntry(client, kList, id)) {
                found.emplace(kList, std::move(*item));
            }
        }
    });
    return found;
}

class ShowCommand final : public Command {
public:
    explicit ShowCommand(CLI::App& app) {
        app.add_option("entry", m_entry, "the entry's id, as `list LIST --ids` shows it, or its unique id")
            ->type_name("ENTRY")
            ->required();
        m_output.addTo(app, OutputOption::Forms::eTableAndJson);
    }

    int run(const CommonOptions& common) override {
        host::ApiClient client(common.server());
        const std::optional<Entry> entry = findInAll(client, m_entry);
        if (!entry) {
            throw std::runtime_error(
                "there is no entry " + host::printable(m_entry) + " in any of the five lists; `" +
                common.commandForUser("list LIST --ids") +
                "` prints the ids of a list (an entry gets a new id whenever a call is added to it, and "
                "keeps its unique id)");
        }
        std::cout << (m_output.isJson() ? host::jsonText(entry->second) + "\n"
                                        : entryText(entry->first, entry->second, terminalWidth()))
                  << std::flush;
        return statusOfOutput();
    }

private:
    std::string m_entry;
    OutputOption m_output;
};

}  // namespace

std::unique_ptr<Command> makeShowCommand(CLI::App& app) {
    return std::make_unique<ShowCommand>(app);
}

}  // namespace calljournal
