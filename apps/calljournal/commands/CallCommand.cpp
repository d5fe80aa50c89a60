#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "apps/calljournal/client/ListClient.h"
#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/output/JsonText.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "host/api-client/ApiClient.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

using Json = nlohmann::ordered_json;

/// An entry id begins with the time of a call, "2026-11-21T05:10:41Z", which no number and no address does.
bool isEntryId(const std::string& text) {
    return text.size() > 10 && text[4] == '-' && text[10] == 'T';
}

bool isConfirmed(const std::string& question) {
    if (isatty(STDIN_FILENO) == 0 || isatty(STDERR_FILENO) == 0) {
        return false;
    }
    std::cerr << question << " [y/N] " << std::flush;
    std::string reply;
    std::getline(std::cin, reply);
    return reply == "y" || reply == "Y" || reply == "yes";
}

class CallCommand final : public Command {
public:
    explicit CallCommand(CLI::App& app) {
        app.add_option("number", m_target,
                       "a telephone number, a sip: address, or the entry id of an entry to call back")
            ->type_name("NUMBER|ENTRY");
        app.add_option("--entry", m_entry, "call the number of the entry with that unique id or entry id")
            ->type_name("ENTRY");
        app.add_flag("--emergency", m_emergency, "call an emergency number without a question");
        app.add_flag("--json", m_json, "print one JSON object");
    }

    int run(const CommonOptions& common) override {
        if (m_target.empty() == m_entry.empty()) {
            std::cerr << "calljournal call: name a number or an entry (`calljournal call --help` shows more)"
                      << std::endl;
            return eWrongUsage;
        }
        host::ApiClient client(common.server());
        const bool isEntry = !m_entry.empty() || isEntryId(m_target);
        const Party party =
            isEntry ? partyOf(client, m_entry.empty() ? m_target : m_entry) : Party{m_target, {}};
        const Json placed = place(client, party.number);
        const std::string text = party.name.empty() ? party.number : party.name + ", " + party.number;
        std::cout << (m_json
                          ? host::jsonText(placed) + "\n"
                          : "calling " + host::printable(text) + " (call " + textIn(placed, "callId") + ")\n")
                  << std::flush;
        return statusOfOutput();
    }

private:
    Json place(host::ApiClient& client, const std::string& number) const {
        Json body{{"number", number}};
        if (m_emergency) {
            body["emergency"] = true;
        }
        try {
            return client.post({"calls"}, body);
        } catch (const host::ApiError& error) {
            const Json& fault = error.body();
            const bool asks = fault.is_object() && fault.contains("error") &&
                              textIn(fault["error"], "code") == "emergency-number";
            if (!asks) {
                throw;
            }
            if (!isConfirmed(host::printable(number) + " reaches an emergency service. Call it?")) {
                throw std::runtime_error(
                    host::printable(number) +
                    " reaches an emergency service and is not called; --emergency calls it");
            }
        }
        body["emergency"] = true;
        return client.post({"calls"}, body);
    }

    struct Party {
        std::string number;
        std::string name;
    };

    static Party partyOf(host::ApiClient& client, const std::string& id) {
        Party party;
        bool isFound = false;
        forEachList([&]<typename Item>() {
            if (!isFound) {
                if (const auto item = findEntry(client, ListTraits<Item>::kList, id)) {
                    isFound = true;
                    party = {textIn(*item, "number"), textIn(*item, "displayName")};
                }
            }
        });
        if (party.number.empty()) {
            throw std::runtime_error(isFound ? "the entry has no number, for the caller has withheld it"
                                             : "there is no entry " + host::printable(id) +
                                                   " in any of the five lists");
        }
        return party;
    }

    std::string m_target;
    std::string m_entry;
    bool m_emergency = false;
    bool m_json = false;
};

}  // namespace

std::unique_ptr<Command> makeCallCommand(CLI::App& app) {
    return std::make_unique<CallCommand>(app);
}

}  // namespace calljournal
