#include <openssl/crypto.h>
#include <sqlite3.h>
#include <unicode/uvernum.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/OutputOption.h"
#include "apps/calljournal/output/Facts.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "host/database/Schema.h"
#include "host/presentation/ItemJson.h"

namespace calljournal {
namespace {

class VersionCommand final : public Command {
public:
    explicit VersionCommand(CLI::App& app) { m_output.addTo(app); }

    int run(const CommonOptions& /*common*/) override {
        const std::string tables = std::to_string(host::Schema::version());
        const std::string openSsl = OpenSSL_version(OPENSSL_VERSION);
        if (m_output.isTable()) {
            std::cout << "calljournal " JOURNAL_VERSION "\n"
                      << "tables of the database: version " << tables << "\n"
                      << "SQLite " << sqlite3_libversion() << ", " << openSsl << ", ICU " << U_ICU_VERSION
                      << "\n";
            return statusOfOutput();
        }
        const Facts versions{{"calljournal", JOURNAL_VERSION},
                             {"tables", tables},
                             {"sqlite", sqlite3_libversion()},
                             {"openssl", openSsl},
                             {"icu", U_ICU_VERSION}};
        if (m_output.isCsv()) {
            std::cout << factsCsv(versions);
        } else {
            nlohmann::ordered_json json;
            for (const auto& [name, version] : versions) {
                json[name] = version;
            }
            std::cout << host::jsonText(json) << "\n";
        }
        return statusOfOutput();
    }

private:
    OutputOption m_output;
};

}  // namespace

std::unique_ptr<Command> makeVersionCommand(CLI::App& app) {
    return std::make_unique<VersionCommand>(app);
}

}  // namespace calljournal
