#include <CLI/CLI.hpp>
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
#include "platform/journal-library/JournalServiceHelper.h"

namespace calljournal {
namespace {

using Helper = JournalServiceHelper;
using journalxml::MethodId;
using Json = nlohmann::ordered_json;
using Entry = std::pair<host::ListName, Json>;

template <typename Item>
using Parser = bool (*)(const std::string&, Item&);

/// The entry of one list. The response is an item without the id if the list has no such entry.
template <typename Item>
std::optional<Entry> find(host::RemoteClient& client, host::ListName list, MethodId method,
                          Parser<Item> parse, const std::string& entryId) {
    Item item;
    if (!parse(client.call(journalxml::buildRequest(method, {entryId})), item)) {
        throw host::RemoteError("calljournal could not return the entry; see its log");
    }
    return item.getEntryId() == entryId ? std::optional<Entry>({list, host::itemJson(item)}) : std::nullopt;
}

/// No method returns a single callback.
std::optional<Entry> findCallback(host::RemoteClient& client, const std::string& entryId) {
    std::deque<CallBackItem> items;
    if (!Helper::parseXMLCallBackList(client.call(journalxml::buildRequest(MethodId::eGetCallBackList)),
                                      items)) {
        throw host::RemoteError("calljournal could not return the entry; see its log");
    }
    for (const CallBackItem& item : items) {
        if (item.getEntryId() == entryId) {
            return Entry{host::ListName::eCallbacks, host::itemJson(item)};
        }
    }
    return std::nullopt;
}

std::optional<Entry> findInAll(host::RemoteClient& client, const std::string& entryId) {
    auto entry = find<MissedCallItem>(client, host::ListName::eMissed, MethodId::eGetMissedCall,
                                      &Helper::parseXMLMissedCallItem, entryId);
    if (!entry) {
        entry = find<DialledCallItem>(client, host::ListName::eDialled, MethodId::eGetDialledCall,
                                      &Helper::parseXMLDialledCallItem, entryId);
    }
    if (!entry) {
        entry = find<ReceivedCallItem>(client, host::ListName::eReceived, MethodId::eGetReceivedCall,
                                       &Helper::parseXMLReceivedCallItem, entryId);
    }
    if (!entry) {
        entry = find<ForwardedCallItem>(client, host::ListName::eForwarded, MethodId::eGetForwardedCall,
                                        &Helper::parseXMLForwardedCallItem, entryId);
    }
    return entry ? entry : findCallback(client, entryId);
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
                common.commandToType("list LIST --ids") +
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
