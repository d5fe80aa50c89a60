#include <CLI/CLI.hpp>
#include <iostream>
#include <string>
#include <vector>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/output/ErrorOutput.h"
#include "apps/calljournal/output/ExitStatus.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "apps/calljournal/output/UsageErrorText.h"

namespace calljournal {
namespace {

class HelpCommand final : public Command {
public:
    explicit HelpCommand(CLI::App& app) : m_program(*app.get_parent()) {
        app.add_option("command", m_words, "the command to explain; without it, all are listed")
            ->type_name("COMMAND");
    }

    int run(const CommonOptions& /*common*/) override {
        const CLI::App* command = &m_program;
        std::string path;
        for (const std::string& word : m_words) {
            path += (path.empty() ? "" : " ") + command->get_name();
            const auto below =
                command->get_subcommands([&word](const CLI::App* each) { return each->get_name() == word; });
            if (below.empty()) {
                printError(unknownCommandText(*command, word));
                return eWrongUsage;
            }
            command = below.front();
        }
        std::cout << command->get_formatter()->make_help(
            command, path + (path.empty() ? "" : " ") + command->get_name(), CLI::AppFormatMode::Normal);
        return statusOfOutput();
    }

private:
    const CLI::App& m_program;
    std::vector<std::string> m_words;
};

}  // namespace

std::unique_ptr<Command> makeHelpCommand(CLI::App& app) {
    return std::make_unique<HelpCommand>(app);
}

}  // namespace calljournal
