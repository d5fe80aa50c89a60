#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/Confirmation.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "apps/calljournal/output/ProgressText.h"
#include "apps/calljournal/server/JournalServer.h"
#include "apps/calljournal/server/StopSignal.h"
#include "host/database/DatabaseCopy.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

/// Shows the progress of `what`, whose text ends in the file's name, and ends it on a signal.
host::CopyProgress progressOf(const StopSignal& stop, ProgressText& progress, const std::string& what) {
    return [&stop, &progress, what](std::size_t done, std::size_t total) {
        progress.show(what, done, total);
        return !stop.hasCome();
    };
}

class BackupCommand final : public Command {
public:
    explicit BackupCommand(CLI::App& app) {
        app.add_option("file", m_file, "the file to write, of mode 0600")->type_name("FILE")->required();
        app.add_flag("--force", m_force, "replace the file if it exists");
    }

    int run(const CommonOptions& common) override {
        const StopSignal stop;
        if (m_file == "-") {
            throw host::DatabaseError("a backup is a file, not the standard output; name it");
        }
        const std::filesystem::path source = JournalServer::databaseIn(common.dataDirectory());
        if (!std::filesystem::exists(source)) {
            throw host::DatabaseError("there is no journal at " + source.string());
        }
        if (JournalServer::isOwnFile(common.dataDirectory(), m_file)) {
            throw host::DatabaseError(m_file +
                                      " has the name of a file of the journal itself; choose another one");
        }
        if (!m_force && std::filesystem::exists(m_file)) {
            throw host::DatabaseError(m_file + " exists; choose another name, or replace it with --force");
        }
        ProgressText progress;
        host::copyDatabase(source, m_file, progressOf(stop, progress, "writing " + m_file));
        progress.clear();
        std::cout << host::printable(m_file) << " holds the journal of " << host::printable(source.string())
                  << "\n";
        return statusOfOutput();
    }

private:
    std::string m_file;
    bool m_force = false;
};

class RestoreCommand final : public Command {
public:
    explicit RestoreCommand(CLI::App& app) {
        app.add_option("file", m_file, "a file that \"backup\" wrote")
            ->type_name("FILE")
            ->required()
            ->check(CLI::ExistingFile);
        m_confirmation.addTo(app);
    }

    int run(const CommonOptions& common) override {
        const StopSignal stop;
        const auto socket = JournalServer::claim(common.dataDirectory());
        const std::filesystem::path target = JournalServer::databaseIn(common.dataDirectory());
        if (std::filesystem::exists(target) &&
            !m_confirmation.isGiven("Replace the journal " + target.string() + " by " + m_file + "?")) {
            return Confirmation::refused();
        }
        ProgressText progress;
        const auto kept =
            host::restoreDatabase(m_file, target, progressOf(stop, progress, "reading " + m_file));
        progress.clear();
        std::cout << host::printable(target.string()) << " is the journal of " << host::printable(m_file)
                  << " now\n";
        for (const std::filesystem::path& each : kept) {
            std::cout << "the former file is " << host::printable(each.string()) << "\n";
        }
        return statusOfOutput();
    }

private:
    std::string m_file;
    Confirmation m_confirmation;
};

}  // namespace

std::unique_ptr<Command> makeBackupCommand(CLI::App& app) {
    return std::make_unique<BackupCommand>(app);
}

std::unique_ptr<Command> makeRestoreCommand(CLI::App& app) {
    return std::make_unique<RestoreCommand>(app);
}

}  // namespace calljournal
