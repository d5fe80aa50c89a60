#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <vector>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/output/JsonText.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "host/api-client/ApiClient.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

using Json = nlohmann::ordered_json;

std::string partyOf(const Json& call) {
    const std::string name = textIn(call, "displayName");
    const std::string number = textIn(call, "number");
    const std::string both = name.empty() || number.empty() ? name + number : name + " (" + number + ")";
    return host::printable(both.empty() ? "an unknown party" : both);
}

/// The live calls of the service that a command applies to.
std::vector<Json> liveCalls(host::ApiClient& client, bool onlyRinging) {
    std::vector<Json> calls;
    const Json response = client.get({"live-calls"});
    for (const Json& call : response["calls"]) {
        if (!onlyRinging || textIn(call, "state") == "ringing") {
            calls.push_back(call);
        }
    }
    return calls;
}

/// Without a call id, the only call that the command can be meant for.
class LiveCallCommand : public Command {
public:
    int run(const CommonOptions& common) override {
        host::ApiClient client(common.server());
        const Json call = chosen(client);
        carryOut(client, textIn(call, "callId"));
        std::cout << done() << " " << partyOf(call) << std::endl;
        return statusOfOutput();
    }

protected:
    LiveCallCommand(CLI::App& app, bool onlyRinging) : m_onlyRinging(onlyRinging) {
        app.add_option("CALLID", m_callId, "the id of the live call; without it, the only one")
            ->type_name("");  // the name says it
    }

private:
    virtual void carryOut(host::ApiClient& client, const std::string& callId) const = 0;
    [[nodiscard]] virtual const char* done() const = 0;

    [[nodiscard]] Json chosen(host::ApiClient& client) const {
        const std::vector<Json> calls = liveCalls(client, m_onlyRinging && m_callId.empty());
        std::string ids;
        for (const Json& call : calls) {
            if (textIn(call, "callId") == m_callId || (m_callId.empty() && calls.size() == 1)) {
                return call;
            }
            ids += (ids.empty() ? "" : ", ") + textIn(call, "callId") + " " + partyOf(call) + " (" +
                   textIn(call, "state") + ")";
        }
        const std::string none = m_onlyRinging ? "no call rings" : "there is no live call";
        throw std::runtime_error(!m_callId.empty() ? "there is no live call " + host::printable(m_callId) +
                                                         (ids.empty() ? "" : "; the live calls: " + ids)
                                 : ids.empty() ? none
                                               : "there are several calls; name one of them: " + ids);
    }

    const bool m_onlyRinging;
    std::string m_callId;
};

class AnswerCallCommand final : public LiveCallCommand {
public:
    explicit AnswerCallCommand(CLI::App& app) : LiveCallCommand(app, true) {}

private:
    void carryOut(host::ApiClient& client, const std::string& callId) const override {
        client.post({"live-calls", callId, "answer"}, Json::object());
    }
    [[nodiscard]] const char* done() const override { return "connected with"; }
};

class HangUpCommand final : public LiveCallCommand {
public:
    explicit HangUpCommand(CLI::App& app) : LiveCallCommand(app, false) {}

private:
    void carryOut(host::ApiClient& client, const std::string& callId) const override {
        client.remove({"live-calls", callId}, {});
    }
    [[nodiscard]] const char* done() const override { return "ended the call with"; }
};

}  // namespace

std::unique_ptr<Command> makeAnswerCallCommand(CLI::App& app) {
    return std::make_unique<AnswerCallCommand>(app);
}

std::unique_ptr<Command> makeHangUpCommand(CLI::App& app) {
    return std::make_unique<HangUpCommand>(app);
}

}  // namespace calljournal
