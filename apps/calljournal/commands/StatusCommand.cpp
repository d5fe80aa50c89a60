#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/OutputOption.h"
#include "apps/calljournal/output/Facts.h"
#include "apps/calljournal/output/JsonText.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "host/api-client/ApiClient.h"
#include "host/presentation/ItemJson.h"

namespace calljournal {
namespace {

using Json = nlohmann::ordered_json;

std::string counted(std::int64_t number, const char* one, const char* many) {
    return std::to_string(number) + " " + (number == 1 ? one : many);
}

std::string switchText(const Json& link) {
    if (!link.value("connected", false)) {
        return "not connected";
    }
    return link.value("monitoring", false) ? "connected, and reports the line's calls"
                                           : "connected, but does not report the line's calls";
}

std::string telephoneText(const Json& telephone) {
    const std::string reason = telephone.value("reason", "");
    return telephone.value("state", "") + (reason.empty() ? "" : ": " + reason);
}

std::string storageText(const Json& database) {
    const std::int64_t kept = database.value("kept", std::int64_t{0});
    const std::int64_t lost = database.value("lost", std::int64_t{0});
    std::string text =
        kept == 0 ? "every change is stored" : counted(kept, "change is", "changes are") + " not stored yet";
    return lost == 0 ? text : text + "; " + counted(lost, "change was", "changes were") + " lost";
}

std::string listText(const Json& list) {
    std::string text = counted(list.value("total", std::int64_t{0}), "entry", "entries");
    const std::int64_t fresh = list.value("unviewed", std::int64_t{0});
    return fresh == 0 ? text : text + ", " + std::to_string(fresh) + " new";
}

Facts factsOf(const Json& status) {
    Facts facts{{"version", status.value("version", "")},
                {"line", status.value("line", "")},
                {"switch", switchText(status.at("switch"))}};
    if (const Json& telephone = status.at("telephone"); telephone.is_object()) {
        facts.emplace_back("telephone", telephoneText(telephone));
    }
    facts.emplace_back("calls now", textIn(status, "calls"));
    facts.emplace_back("stored calls", textIn(status, "storedCalls"));
    facts.emplace_back("storage", storageText(status.at("database")));
    for (const auto& [name, list] : status.at("lists").items()) {
        facts.emplace_back(name, listText(list));
    }
    return facts;
}

class StatusCommand final : public Command {
public:
    explicit StatusCommand(CLI::App& app) { m_output.addTo(app); }

    /// The status is 1 if the switch does not report the calls, too.
    int run(const CommonOptions& common) override {
        host::ApiClient client(common.server());
        const Json status = client.get({"status"});
        if (m_output.isJson()) {
            std::cout << host::jsonText(status) << "\n";
        } else {
            const Facts facts = factsOf(status);
            std::cout << (m_output.isCsv() ? factsCsv(facts) : factsText(facts));
        }
        return statusOfOutput(status.at("switch").value("monitoring", false));
    }

private:
    OutputOption m_output;
};

}  // namespace

std::unique_ptr<Command> makeStatusCommand(CLI::App& app) {
    return std::make_unique<StatusCommand>(app);
}

}  // namespace calljournal
