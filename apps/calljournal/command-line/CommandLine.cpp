#include "apps/calljournal/command-line/CommandLine.h"

#include <CLI/CLI.hpp>
#include <array>
#include <exception>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/output/Colour.h"
#include "apps/calljournal/output/ErrorOutput.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "apps/calljournal/output/UsageErrorText.h"
#include "host/config/DataDirectory.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

/// eLine and eAllLines speak the HTTP API only, so that their server may run on another machine: about one
/// line, or about none. eSocket: the same about one line over the socket. eAbout: it needs no journal.
enum class Kind { eLocal, eLine, eAllLines, eSocket, eAbout };

struct Entry {
    Kind kind;
    const char* name;
    const char* help;
    std::unique_ptr<Command> (*make)(CLI::App&);
};

constexpr std::array<Entry, 27> kEntries{{
    {Kind::eLocal, "serve", "run the call journal of telephone lines", &makeServeCommand},
    {Kind::eLocal, "switch", "simulate a CSTA switch that plays calls", &makeSwitchCommand},
    {Kind::eLocal, "sip", "be the CSTA switch of a SIP telephone", &makeSipCommand},
    {Kind::eLocal, "demo", "run the call journal with a simulated switch that plays calls", &makeDemoCommand},
    {Kind::eLine, "status", "print the state of the running journal", &makeStatusCommand},
    {Kind::eLocal, "doctor", "examine the configuration, the data and the connections", &makeDoctorCommand},
    {Kind::eLocal, "version", "print the versions of the program and its libraries", &makeVersionCommand},
    {Kind::eLine, "list", "print a list of the running journal", &makeListCommand},
    {Kind::eLine, "calls", "print the calls of the history of the running journal", &makeCallsCommand},
    {Kind::eLine, "stats", "print statistics of the calls of the running journal", &makeStatsCommand},
    {Kind::eLine, "show", "print an entry of the running journal with all its calls", &makeShowCommand},
    {Kind::eSocket, "watch", "print the changes of the running journal as they come", &makeWatchCommand},
    {Kind::eLine, "call", "place a call with the telephone of the line", &makeCallCommand},
    {Kind::eLine, "answer", "answer the call that rings", &makeAnswerCallCommand},
    {Kind::eLine, "hangup", "end a live call", &makeHangUpCommand},
    {Kind::eLine, "viewed", "mark missed calls of the running journal as viewed", &makeViewedCommand},
    {Kind::eLine, "delete", "delete entries or calls of the running journal", &makeDeleteCommand},
    {Kind::eLine, "export", "print calls of the running journal as a file for other programs",
     &makeExportCommand},
    {Kind::eLine, "import", "store the calls of a file in the history of the running journal",
     &makeImportCommand},
    {Kind::eLocal, "backup", "copy the journal to a file, also while it runs", &makeBackupCommand},
    {Kind::eLocal, "restore", "replace the journal by a file that backup wrote", &makeRestoreCommand},
    {Kind::eLine, "contacts", "import, print or export the phonebook of the running journal",
     &makeContactsCommand},
    {Kind::eLine, "settings", "print or change the settings of the running journal and its phone",
     &makeSettingsCommand},
    {Kind::eAllLines, "open", "print a link to the page, and a QR code for a telephone's camera",
     &makeOpenCommand},
    {Kind::eAllLines, "tokens", "create, list or revoke tokens for other programs and devices",
     &makeTokensCommand},
    {Kind::eAllLines, "lines", "list, add or remove telephone lines", &makeLinesCommand},
    {Kind::eAbout, "help", "print the help of the program or of a command", &makeHelpCommand},
}};

std::string programName(const char* calledAs) {
    const std::string name = calledAs != nullptr ? calledAs : "";
    return name.find('/') == std::string::npos ? "calljournal" : name;
}

void addServerOptions(CLI::App& sub, CommonOptions& common) {
    CLI::Option* const url =
        sub.add_option("--url", common.url, "the server, which may run on another machine [that of --data]")
            ->type_name("URL");
    sub.add_option("--token-file", common.tokenFile, "the file with the token for --url")
        ->type_name("FILE")
        ->needs(url);
    sub.add_option(
           "--ca-file", common.authorities,
           "the certificates of the authorities that the server of --url is checked by [the system's]")
        ->type_name("FILE")
        ->needs(url);
}

void addColourOption(CLI::App& app) {
    app.add_option_function<std::string>(
           "--color",
           [](const std::string& use) {
               setColourUse(use == "always"  ? ColourUse::eAlways
                            : use == "never" ? ColourUse::eNever
                                             : ColourUse::eAuto);
           },
           "colours in tables: auto, on a terminal and without NO_COLOR [auto]")
        ->type_name("auto|always|never")
        ->check(std::function<std::string(const std::string&)>([](const std::string& use) {
            return use == "auto" || use == "always" || use == "never"
                       ? std::string()
                       : "there is no use " + use + "; it is auto, always or never";
        }));
}

using Commands = std::vector<std::pair<CLI::App*, std::unique_ptr<Command>>>;

void addDataOption(CLI::App& app, CommonOptions& common) {
    app.add_option("--data", common.data,
                   "directory of the journal [$XDG_STATE_HOME/calljournal, or ~/.local/state/calljournal]")
        ->type_name("DIR")
        ->check([](const std::string& directory) {
            return directory.empty() ? "the directory has no name" : std::string();
        });
}

Commands addCommands(CLI::App& app, CommonOptions& common) {
    Commands commands;
    addDataOption(app, common);
    addColourOption(app);
    for (const Entry& entry : kEntries) {
        CLI::App* const sub = app.add_subcommand(entry.name, entry.help);
        commands.emplace_back(sub, entry.make(*sub));
        if (entry.kind != Kind::eAbout) {
            addDataOption(*sub, common);
        }
        if (entry.kind == Kind::eLine || entry.kind == Kind::eAllLines) {
            addServerOptions(*sub, common);
            addColourOption(*sub);
        }
        if (entry.kind == Kind::eLine || entry.kind == Kind::eSocket) {
            sub->add_option("--line", common.line, "the device of the line [the first, or that of the token]")
                ->type_name("DEVICE");
        }
    }
    return commands;
}

void describeProgram(CLI::App& app) {
    app.name("calljournal");
    app.description("The call journal of telephone lines: calls received, dialled, missed and forwarded.");
    app.get_formatter()->label("REQUIRED", "(required)");
    app.get_formatter()->label("Excludes", "not with");
    app.require_subcommand(0, 1);
    app.set_version_flag("--version", "calljournal " JOURNAL_VERSION);
}

int runChosen(const Commands& commands, const CommonOptions& common) {
    for (const auto& [app, command] : commands) {
        if (app->parsed()) {
            return command->run(common);
        }
    }
    return eWrongUsage;
}

}  // namespace

std::filesystem::path CommonOptions::dataDirectory() const {
    return data.empty() ? host::defaultDataDirectory() : std::filesystem::path(data);
}

host::ApiServer CommonOptions::server() const {
    host::ApiServer server =
        url.empty() ? host::ApiServer::in(dataDirectory()) : host::ApiServer::at(url, tokenFile, authorities);
    server.line = line;
    return server;
}

std::string CommonOptions::commandForUser(const std::string& command) const {
    return program + " " + command + (data.empty() ? std::string() : " --data " + host::printable(data));
}

void readCommandLine(const std::function<void(const CLI::App&)>& read) {
    CLI::App app;
    describeProgram(app);
    CommonOptions common;
    const Commands commands = addCommands(app, common);
    read(app);
}

int runCommandLine(int argc, char** argv) {
    CLI::App app;
    describeProgram(app);
    CommonOptions common;
    common.program = programName(argc > 0 ? argv[0] : nullptr);
    const Commands commands = addCommands(app, common);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            static_cast<void>(app.exit(error));  // prints the help or the version
            return statusOfOutput();
        }
        std::cerr << host::printable(usageErrorText(app, error)) << std::endl;
        return eWrongUsage;
    }
    if (app.get_subcommands().empty()) {
        if (!common.data.empty()) {
            std::cerr << host::printable(missingCommandText(app)) << std::endl;
            return eWrongUsage;
        }
        std::cout << app.help();
        return statusOfOutput();
    }
    try {
        return runChosen(commands, common);
    } catch (const std::exception& error) {
        printError(host::printable(error.what()));
        return eFailed;
    }
}

}  // namespace calljournal
