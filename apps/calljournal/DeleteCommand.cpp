#include <CLI/CLI.hpp>
#include <iostream>
#include <set>
#include <vector>

#include "apps/calljournal/Command.h"
#include "apps/calljournal/CommandLine.h"
#include "apps/calljournal/ListOptions.h"
#include "apps/calljournal/ListResponse.h"
#include "host/remote/RemoteClient.h"
#include "host/remote/RemoteError.h"
#include "platform/journal-library/ClientRequest.h"
#include "platform/journal-library/ClientResponse.h"
#include "platform/journal-library/ListXml.h"

namespace calljournal {
namespace {

using journalxml::MethodId;

void requireSuccess(const std::string& response) {
    if (journalxml::parseBoolResponse(response) != true) {
        throw host::RemoteError("calljournal could not delete; see its log");
    }
}

class DeleteCommand final : public Command {
public:
    explicit DeleteCommand(CLI::App& app) {
        addListOption(app, m_list);
        addEntryIdsOption(app, m_entryIds, "the entries, as `list LIST --ids` shows them");
        app.add_flag("--all", m_all, "delete every entry of the list");
        app.callback([this] {
            if (m_entryIds.empty() != m_all) {
                throw CLI::ValidationError(
                    m_all ? "either --all or entries, not both"
                          : "no entries are given; give their ids, or --all for all of them");
            }
        });
    }

    int run(const CommonOptions& common) override {
        host::RemoteClient client(common.dataDirectory());
        const ListName list = listNamed(m_list).value();
        std::vector<std::string> unknown;
        const std::size_t deleted = m_all ? deleteAll(client, list) : deleteNamed(client, list, unknown);
        std::cout << host::countText(list, deleted) << " deleted" << std::endl;
        for (const std::string& entryId : unknown) {
            printUnknown(entryId, list, common);
        }
        return unknown.empty() && std::cout.good() ? eDone : eFailed;
    }

private:
    /// Deletes one entry a request, because only then does the response show if the entry existed.
    std::size_t deleteNamed(host::RemoteClient& client, ListName list,
                            std::vector<std::string>& unknown) const {
        const MethodId method = withItemOf(list, []<typename Item>() { return ListXml<Item>::kDelete; });
        std::size_t deleted = 0;
        for (const std::string& entryId : m_entryIds) {
            if (journalxml::parseBoolResponse(client.call(journalxml::buildRequest(method, {entryId}))) ==
                true) {
                ++deleted;
            } else {
                unknown.push_back(entryId);
            }
        }
        return deleted;
    }

    /// Repeats until the list is empty, because a list has only the newest entries loaded: older ones are
    /// loaded after these are deleted.
    static std::size_t deleteAll(host::RemoteClient& client, ListName list) {
        const MethodId method = withItemOf(list, []<typename Item>() { return ListXml<Item>::kDeleteList; });
        std::set<std::string> deleted;
        for (;;) {
            std::vector<std::string> entryIds;
            const ListResponse response = fetchList(client, list);
            for (const ListRow& row : response.rows) {
                if (!deleted.insert(row.entryId).second) {
                    throw host::RemoteError("calljournal could not delete " +
                                            host::countText(list, response.rows.size()) + "; see its log");
                }
                entryIds.push_back(row.entryId);
            }
            if (entryIds.empty()) {
                return deleted.size();
            }
            requireSuccess(client.call(journalxml::buildRequest(method, entryIds)));
            requireSuccess(client.call(journalxml::buildRequest(MethodId::eRefreshCallLists)));
        }
    }

    std::string m_list;
    std::vector<std::string> m_entryIds;
    bool m_all = false;
};

}  // namespace

std::unique_ptr<Command> makeDeleteCommand(CLI::App& app) {
    return std::make_unique<DeleteCommand>(app);
}

}  // namespace calljournal
