#include <CLI/CLI.hpp>
#include <iostream>
#include <optional>
#include <stdexcept>

#include "apps/calljournal/Command.h"
#include "apps/calljournal/CommandLine.h"
#include "apps/calljournal/RemoteSettings.h"
#include "apps/calljournal/SettingsText.h"
#include "apps/calljournal/TerminalWidth.h"
#include "host/management/SettingRules.h"
#include "host/presentation/PlainText.h"
#include "host/remote/RemoteClient.h"

namespace calljournal {
namespace {

class SettingsCommand final : public Command {
public:
    explicit SettingsCommand(CLI::App& app) {
        app.add_option("key", m_key, "the setting to read or to change; without it, all are printed")
            ->type_name("KEY");
        m_valueOption = app.add_option("value", m_value, "what to set it to")->type_name("VALUE");
        app.add_flag("--json", m_json, "print one JSON object");
    }

    int run(const CommonOptions& common) override {
        journalxml::ManagementRequest request{m_key, std::nullopt};
        if (changes()) {
            request.value = m_value;
        }
        host::RemoteClient client(common.dataDirectory());
        const auto answer = askSettings(client, request);
        if (answer.refused) {
            refuse(*answer.refused, common);
        }
        print(answer, common);
        return std::cout.good() ? eDone : eFailed;
    }

private:
    [[nodiscard]] bool changes() const { return m_valueOption->count() > 0; }

    [[noreturn]] void refuse(const journalxml::RefusedKey& refused, const CommonOptions& common) const {
        if (m_json) {
            std::cout << refusalJson(refused) << std::endl;
        }
        const bool isUnknown = !changes() || !host::isRead(refused.key);
        throw std::runtime_error(host::printable(refused.text) + (isUnknown ? hint(common) : ""));
    }

    [[nodiscard]] static std::string hint(const CommonOptions& common) {
        return "; `" + common.commandToType("settings") + "` shows those that there are";
    }

    void print(const journalxml::ManagementResponse& answer, const CommonOptions& common) const {
        if (!m_key.empty() && !changes() && !answer.settings.front().value) {
            throw std::runtime_error(host::printable(m_key) + " has no value; `" +
                                     common.commandToType("settings " + m_key + " VALUE") + "` gives it one");
        }
        if (m_json) {
            std::cout << settingsJson(answer.settings) << std::endl;
        } else if (changes()) {
            std::cout << host::printable(m_key) << " is set to " << host::printable(m_value) << std::endl;
        } else if (!m_key.empty()) {
            std::cout << host::printable(*answer.settings.front().value) << std::endl;
        } else {
            std::cout << settingsTable(answer.settings, terminalWidth()) << std::flush;
        }
    }

    std::string m_key;
    std::string m_value;
    CLI::Option* m_valueOption = nullptr;
    bool m_json = false;
};

}  // namespace

std::unique_ptr<Command> makeSettingsCommand(CLI::App& app) {
    return std::make_unique<SettingsCommand>(app);
}

}  // namespace calljournal
