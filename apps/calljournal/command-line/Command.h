#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "host/api-client/ApiClient.h"

namespace CLI {
class App;
}

namespace calljournal {

/// The options of all sub-commands.
struct CommonOptions {
    /// The name that the user started the program with, for texts that contain a command.
    std::string program = "calljournal";
    /// Empty: the default directory.
    std::string data;
    /// The URL of a server on any machine; empty: the server of the data directory.
    std::string url;
    /// The file with the token for `url`; empty for none.
    std::string tokenFile;
    /// The file with the authorities of the certificate of `url`; empty for those of the system.
    std::string authorities;

    /// The line that the command is about; empty: the first one, or that of the token.
    std::string line;

    /// The server that the clients use. Throws `RemoteError` and `ConfigurationError`.
    [[nodiscard]] host::ApiServer server() const;
    /// The data directory. Throws `ConfigurationError` if there is no default.
    [[nodiscard]] std::filesystem::path dataDirectory() const;
    /// A command that the user can type for the same data directory: "calljournal watch --data DIR".
    [[nodiscard]] std::string commandForUser(const std::string& command) const;
};

/// A sub-command. Its constructor adds its options to the command line.
class Command {
public:
    Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    virtual ~Command() = default;

    /// Returns the exit status. Throws a `std::exception` with a text for the user. Call from the main
    /// thread, before any other thread is started.
    [[nodiscard]] virtual int run(const CommonOptions& common) = 0;
};

// Each adds the options of its sub-command to `app`. Requires: `app` outlives the command.
[[nodiscard]] std::unique_ptr<Command> makeServeCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeStatusCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeDoctorCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeVersionCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeSwitchCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeSipCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeDemoCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeListCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeCallsCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeStatsCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeShowCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeWatchCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeCallCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeAnswerCallCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeHangUpCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeViewedCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeDeleteCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeExportCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeImportCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeBackupCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeRestoreCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeContactsCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeSettingsCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeTokensCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeLinesCommand(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> makeOpenCommand(CLI::App& app);
/// Requires: `app` is a sub-command of the program.
[[nodiscard]] std::unique_ptr<Command> makeHelpCommand(CLI::App& app);

}  // namespace calljournal
