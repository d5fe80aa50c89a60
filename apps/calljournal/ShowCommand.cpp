#include <CLI/CLI.hpp>
#include <algorithm>
#include <deque>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <utility>

#include "apps/calljournal/Command.h"
#include "apps/calljournal/CommandLine.h"
#include "apps/calljournal/EntryText.h"
#include "apps/calljournal/TerminalWidth.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"
#include "host/remote/RemoteClient.h"
#include "host/remote/RemoteError.h"
#include "platform/journal-library/ClientRequest.h"
#include "platform/journal-library/ListXml.h"

namespace calljournal {
namespace {

using Entry = std::pair<ListName, nlohmann::ordered_json>;

[[noreturn]] void fail() {
    throw host::RemoteError("calljournal could not return the entry; see its log");
}

/// Returns the entry of one list; std::nullopt if the list does not contain it.
template <typename Item>
std::optional<Entry> find(host::RemoteClient& client, const std::string& entryId) {
    const auto matches = [&entryId](const Item& each) { return each.getEntryId() == entryId; };
    if constexpr (ListXml<Item>::kGet) {
        Item item;
        if (!ListXml<Item>::kParseItem(client.call(journalxml::buildRequest(*ListXml<Item>::kGet, {entryId})),
                                       item)) {
            fail();
        }
        // The response is an item without the id if the list has no such entry.
        return matches(item) ? std::optional<Entry>({ListTraits<Item>::kList, host::itemJson(item)})
                             : std::nullopt;
    } else {
        std::deque<Item> items;
        if (!ListXml<Item>::kParse(client.call(journalxml::buildRequest(ListXml<Item>::kGetList)), items)) {
            fail();
        }
        const auto found = std::find_if(items.begin(), items.end(), matches);
        return found != items.end() ? std::optional<Entry>({ListTraits<Item>::kList, host::itemJson(*found)})
                                    : std::nullopt;
    }
}

std::optional<Entry> findInAll(host::RemoteClient& client, const std::string& entryId) {
    std::optional<Entry> entry;
    forEachList([&]<typename Item>() {
        if (!entry) {
            entry = find<Item>(client, entryId);
        }
    });
    return entry;
}

class ShowCommand final : public Command {
public:
    explicit ShowCommand(CLI::App& app) {
        app.add_option("entry-id", m_entryId, "the entry, as `list LIST --ids` shows it")
            ->type_name("ENTRY_ID")
            ->required();
        app.add_flag("--json", m_json, "print one JSON object");
    }

    int run(const CommonOptions& common) override {
        host::RemoteClient client(common.dataDirectory());
        const std::optional<Entry> entry = findInAll(client, m_entryId);
        if (!entry) {
            throw std::runtime_error(
                "there is no entry " + host::printable(m_entryId) + " in any of the five lists; `" +
                common.commandForUser("list LIST --ids") +
                "` prints the ids of a list (an entry gets a new id whenever a call is added to it)");
        }
        std::cout << (m_json ? host::jsonText(entry->second) + "\n"
                             : entryText(entry->first, entry->second, terminalWidth()))
                  << std::flush;
        return std::cout.good() ? eDone : eFailed;
    }

private:
    std::string m_entryId;
    bool m_json = false;
};

}  // namespace

std::unique_ptr<Command> makeShowCommand(CLI::App& app) {
    return std::make_unique<ShowCommand>(app);
}

}  // namespace calljournal
