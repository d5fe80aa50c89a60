#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <vector>

#include "apps/calljournal/Command.h"
#include "apps/calljournal/CommandLine.h"
#include "apps/calljournal/ListOptions.h"
#include "apps/calljournal/ListResponse.h"
#include "host/remote/RemoteClient.h"
#include "host/remote/RemoteError.h"
#include "platform/journal-library/ClientRequest.h"
#include "platform/journal-library/ClientResponse.h"

namespace calljournal {
namespace {

class ViewedCommand final : public Command {
public:
    explicit ViewedCommand(CLI::App& app) {
        addEntryIdsOption(app, m_entryIds, "the missed calls, as `list missed --ids` shows them");
        app.get_option("entry-ids")->required();
    }

    int run(const CommonOptions& common) override {
        host::RemoteClient client(common.dataDirectory());
        const ListResponse missed = fetchList(client, ListName::eMissed);
        // The journal accepts every id and does not report unknown ones.
        const auto firstUnknown = std::stable_partition(
            m_entryIds.begin(), m_entryIds.end(), [&missed](const std::string& entryId) {
                return std::any_of(missed.rows.begin(), missed.rows.end(),
                                   [&entryId](const ListRow& row) { return row.entryId == entryId; });
            });
        const std::vector<std::string> known(m_entryIds.begin(), firstUnknown);
        const std::string request =
            journalxml::buildRequest(journalxml::MethodId::eSetMissedCallListAsViewed, known);
        if (journalxml::parseBoolResponse(client.call(request)) != true) {
            throw host::RemoteError("calljournal could not mark them; see its log");
        }
        std::cout << host::countText(ListName::eMissed, known.size()) << " viewed" << std::endl;
        std::for_each(firstUnknown, m_entryIds.end(), [&common](const std::string& entryId) {
            printUnknown(entryId, ListName::eMissed, common);
        });
        return firstUnknown == m_entryIds.end() && std::cout.good() ? eDone : eFailed;
    }

private:
    std::vector<std::string> m_entryIds;
};

}  // namespace

std::unique_ptr<Command> makeViewedCommand(CLI::App& app) {
    return std::make_unique<ViewedCommand>(app);
}

}  // namespace calljournal
