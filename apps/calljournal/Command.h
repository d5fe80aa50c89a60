#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace CLI {
class App;
}

namespace calljournal {

/// What all sub-commands have in common.
struct CommonOptions {
    /// How the program was called, for texts that show a command to type.
    std::string program = "calljournal";
    /// Empty stands for the default.
    std::string data;

    /// The data directory. Throws `ConfigurationError` when there is no default.
    [[nodiscard]] std::filesystem::path dataDirectory() const;
    /// A command to type that works on the same data directory: "calljournal watch --data DIR".
    [[nodiscard]] std::string commandToType(const std::string& command) const;
};

/// One sub-command. Its options are added to the command line when it is made.
class Command {
public:
    Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    virtual ~Command() = default;

    /// Runs on the main thread, which has started no other yet. Answers the exit status; throws a `std::exception`
    /// whose text is for the user.
    [[nodiscard]] virtual int run(const CommonOptions& common) = 0;
};

// Each adds the options of its sub-command to `app`, which outlives the command.
[[nodiscard]] std::unique_ptr<Command> makeServeCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeSwitchCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeDemoCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeListCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeShowCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeWatchCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeViewedCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeDeleteCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeExportCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeContactsCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeSettingsCommand(CLI::App& app);

}  // namespace calljournal
