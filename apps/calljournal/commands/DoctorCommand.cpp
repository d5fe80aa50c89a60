#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/OutputOption.h"
#include "apps/calljournal/command-line/ServeOptions.h"
#include "apps/calljournal/diagnosis/DataChecks.h"
#include "apps/calljournal/diagnosis/Finding.h"
#include "apps/calljournal/diagnosis/NetworkChecks.h"
#include "apps/calljournal/output/CsvTable.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "host/api-client/ApiAddress.h"
#include "host/config/ConfigurationError.h"
#include "host/log/Log.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

constexpr std::size_t kLevelWidth = 9;
constexpr std::size_t kSubjectWidth = 18;

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size() + 1), ' ');
    return text;
}

const char* wordOf(Finding::Level level) {
    switch (level) {
        case Finding::Level::eGood: return "ok";
        case Finding::Level::eWarning: return "warning";
        case Finding::Level::eFailed: break;
    }
    return "FAILED";
}

class DoctorCommand final : public Command {
public:
    explicit DoctorCommand(CLI::App& app) {
        m_options.addTo(app, true);
        m_output.addTo(app);
        app.add_option("--sip", m_account, "examine this account file and its telephone, too")
            ->type_name("FILE");
    }

    int run(const CommonOptions& common) override {
        host::Log::configure("error", "");
        host::Configuration configuration;
        bool isKnown = true;
        const bool isOfServer = useFileOfServer(common);
        try {
            configuration = m_options.load("info", {});
            const std::filesystem::path file = m_options.file();
            print({Finding::Level::eGood, "configuration",
                   file.empty() ? "no file; all keys have their default values (--config names the one that "
                                  "a service uses)"
                                : file.string() + (isOfServer ? ", which the running server uses" : "")});
        } catch (const host::ConfigurationError& error) {
            isKnown = false;
            print({Finding::Level::eFailed, "configuration",
                   std::string(error.what()) + "; what it names is not examined"});
        }
        if (isKnown) {
            printAll(examineFiles(configuration));
        }
        printAll(examineData(common.dataDirectory()));
        if (isKnown) {
            printAll(examineConnections(common, configuration));
        }
        if (!m_account.empty()) {
            printAll(examineSip(m_account));
        }
        printForPrograms();
        return statusOfOutput(!m_hasFailure);
    }

private:
    /// Without --config, the file of the server that runs in the data directory is examined, if it has one.
    bool useFileOfServer(const CommonOptions& common) {
        const auto address = host::ApiAddressFile::read(common.dataDirectory());
        if (m_options.namesFile() || !address || address->configuration.empty()) {
            return false;
        }
        m_options.setFile(address->configuration);
        return true;
    }

    void print(const Finding& finding) {
        m_hasFailure = m_hasFailure || finding.level == Finding::Level::eFailed;
        if (!m_output.isTable()) {
            m_findings.push_back(finding);
            return;
        }
        std::cout << padded(wordOf(finding.level), kLevelWidth) << padded(finding.subject, kSubjectWidth)
                  << host::printable(finding.text) << std::endl;
    }
    void printAll(const Findings& findings) {
        std::for_each(findings.begin(), findings.end(), [this](const Finding& each) { print(each); });
    }

    void printForPrograms() const {
        if (m_output.isJson()) {
            nlohmann::ordered_json findings = nlohmann::ordered_json::array();
            for (const Finding& each : m_findings) {
                findings.push_back(
                    {{"level", wordOf(each.level)}, {"subject", each.subject}, {"text", each.text}});
            }
            std::cout << host::jsonText({{"findings", findings}}) << "\n";
        } else if (m_output.isCsv()) {
            std::vector<TableRow> rows;
            for (const Finding& each : m_findings) {
                rows.push_back({false, {wordOf(each.level), each.subject, each.text}});
            }
            std::cout << csvTable({"LEVEL", "SUBJECT", "TEXT"}, rows);
        }
    }

    ServeOptions m_options;
    OutputOption m_output;
    /// Those that are not for people: a table is printed while the checks go on.
    Findings m_findings;
    std::string m_account;
    bool m_hasFailure = false;
};

}  // namespace

std::unique_ptr<Command> makeDoctorCommand(CLI::App& app) {
    return std::make_unique<DoctorCommand>(app);
}

}  // namespace calljournal
