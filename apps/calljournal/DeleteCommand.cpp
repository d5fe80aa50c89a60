#include <CLI/CLI.hpp>
#include <iostream>
#include <vector>

#include "apps/calljournal/Command.h"
#include "apps/calljournal/CommandLine.h"
#include "apps/calljournal/ListOptions.h"
#include "host/presentation/ListName.h"
#include "host/remote/RemoteClient.h"
#include "host/remote/RemoteError.h"
#include "platform/journal-library/ListMessage.h"

namespace calljournal {
namespace {

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
        const auto result =
            journalxml::parseListDeleted(client.call(journalxml::buildListRequest({list, m_entryIds})));
        if (!result) {
            throw host::RemoteError("calljournal could not delete; see its log");
        }
        std::cout << host::countText(list, result->deleted) << " deleted" << std::endl;
        for (const std::string& entryId : result->unknown) {
            printUnknown(entryId, list, common);
        }
        if (result->remaining != 0) {
            std::cerr << "calljournal: " << host::countText(list, result->remaining)
                      << " could not be deleted and remain in the database; see the log of calljournal"
                      << std::endl;
        }
        return result->unknown.empty() && result->remaining == 0 && std::cout.good() ? eDone : eFailed;
    }

private:
    std::string m_list;
    std::vector<std::string> m_entryIds;
    bool m_all = false;
};

}  // namespace

std::unique_ptr<Command> makeDeleteCommand(CLI::App& app) {
    return std::make_unique<DeleteCommand>(app);
}

}  // namespace calljournal
