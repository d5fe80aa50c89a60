#include <CLI/CLI.hpp>
#include <iostream>

#include "apps/calljournal/Command.h"
#include "apps/calljournal/CommandLine.h"
#include "apps/calljournal/ListAnswer.h"
#include "host/remote/RemoteClient.h"
#include "host/remote/RemoteError.h"
#include "platform/journal-library/ClientRequest.h"

namespace host {
namespace {

class ListCommand final : public Command {
public:
    explicit ListCommand(CLI::App& app) {
        app.add_option("list", m_list, "missed, dialled, received, forwarded or callbacks")
            ->type_name("LIST")
            ->required()
            ->check(CLI::IsMember({"missed", "dialled", "received", "forwarded", "callbacks"}));
        app.add_option("--limit", m_limit, "print only the newest N")
            ->type_name("N")
            ->check(CLI::PositiveNumber);
        app.add_option("--search", m_filter.search, "print only entries with TEXT in their name or number")
            ->type_name("TEXT");
        app.add_flag("--json", m_json, "print one JSON object");
    }

    int run(const CommonOptions& common) override {
        if (m_limit > 0) {
            m_filter.limit = m_limit;
        }
        const ListName list = listNamed(m_list).value();
        RemoteClient client(common.dataDirectory());
        const auto answer =
            readListAnswer(list, client.call(journalxml::buildRequest(methodFor(list))), m_filter);
        if (!answer) {
            throw RemoteError("calljournal could not answer; its log says why");
        }
        std::cout << (m_json ? answer->json + "\n" : describe(*answer)) << std::flush;
        return std::cout.good() ? eDone : eFailed;
    }

private:
    [[nodiscard]] std::string describe(const ListAnswer& answer) const {
        if (answer.rows.empty()) {
            return "nothing " + std::string(m_filter.search.empty() ? "in the list" : "found") + "\n";
        }
        std::string text = tableText(answer.rows);
        if (answer.rows.size() < answer.total) {
            text += "(" + std::to_string(answer.rows.size()) + " of " + std::to_string(answer.total) + ")\n";
        }
        return text;
    }

    std::string m_list;
    std::size_t m_limit = 0;
    ListFilter m_filter;
    bool m_json = false;
};

}  // namespace

std::unique_ptr<Command> makeListCommand(CLI::App& app) {
    return std::make_unique<ListCommand>(app);
}

}  // namespace host
