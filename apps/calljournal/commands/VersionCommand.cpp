#include <openssl/crypto.h>
#include <sqlite3.h>
#include <unicode/uvernum.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "host/database/Schema.h"

namespace calljournal {
namespace {

class VersionCommand final : public Command {
public:
    int run(const CommonOptions& /*common*/) override {
        std::cout << "calljournal " JOURNAL_VERSION "\n"
                  << "tables of the database: version " << host::Schema::version() << "\n"
                  << "SQLite " << sqlite3_libversion() << ", " << OpenSSL_version(OPENSSL_VERSION) << ", ICU "
                  << U_ICU_VERSION << "\n";
        return statusOfOutput();
    }
};

}  // namespace

std::unique_ptr<Command> makeVersionCommand(CLI::App& /*app*/) {
    return std::make_unique<VersionCommand>();
}

}  // namespace calljournal
