#include <CLI/CLI.hpp>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <system_error>

#include "apps/calljournal/client/CallUpload.h"
#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "apps/calljournal/output/ProgressText.h"
#include "host/api-client/ApiClient.h"
#include "host/call-files/CallFileReader.h"
#include "host/history/Zone.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

using Json = nlohmann::ordered_json;

/// The result of an import, printed at its end; a row that fails is named at once.
class ImportResult {
public:
    ImportResult(const std::string& file, ProgressText& progress) : m_file(file), m_progress(progress) {}

    void count() { ++m_read; }
    void fail(std::size_t row, const std::string& why) {
        m_progress.clear();
        std::cerr << host::printable(m_file) << ":" << row << ": " << host::printable(why) << std::endl;
        m_failed.push_back({{"row", row}, {"error", why}});
    }

    [[nodiscard]] bool hasFailed() const { return !m_failed.empty(); }
    [[nodiscard]] std::size_t read() const noexcept { return m_read; }

    void print(const CallUpload::Counts& counts, bool asJson) const {
        if (asJson) {
            std::cout << host::jsonText({{"read", m_read},
                                         {"imported", counts.imported},
                                         {"known", counts.known},
                                         {"failed", m_failed}})
                      << "\n";
        } else {
            std::cout << m_read << (m_read == 1 ? " call" : " calls") << " read from "
                      << host::printable(m_file) << ": " << counts.imported << " imported, " << counts.known
                      << " known already, " << m_failed.size() << " failed\n";
        }
    }

private:
    const std::string& m_file;
    ProgressText& m_progress;
    std::size_t m_read = 0;
    Json m_failed = Json::array();
};

/// The reason why a text does not name columns; empty if it does.
std::string wrongColumns(const std::string& text) {
    try {
        static_cast<void>(host::CallColumns(text));
        return {};
    } catch (const host::CallFieldError& error) {
        return error.what();
    }
}

class ImportCommand final : public Command {
public:
    explicit ImportCommand(CLI::App& app) {
        app.add_option("file", m_file, "a file that \"export\" wrote, or call-detail records in CSV")
            ->type_name("FILE")
            ->required()
            ->check(CLI::ExistingFile);
        app.add_option("--format", m_format, "csv, json or jsonl; by default the end of the file's name")
            ->type_name("csv|json|jsonl")
            ->check(CLI::IsMember({"csv", "json", "jsonl"}));
        app.add_option(
               "--columns", m_columns,
               "the columns of a CSV file of another system: start=calldate,number=src,duration=billsec")
            ->type_name("MEMBER=COLUMN,...")
            ->check(&wrongColumns);
        app.add_option("--timezone", m_timezone, "the zone of times without one [the machine's]")
            ->type_name("ZONE");
        app.add_option("--time-format", m_timeFormat, "the format of the times, as strptime has it")
            ->type_name("FORMAT");
        app.add_option("--own", m_own, "the own number in the columns calling and called [the line's]")
            ->type_name("NUMBER");
        app.add_flag("--unviewed", m_unviewed, "missed calls of the file count as new");
        app.add_flag("--json", m_json, "print one JSON object");
    }

    int run(const CommonOptions& common) override {
        const auto format = m_format.empty() ? host::callFormatOf(m_file) : host::callFormatNamed(m_format);
        if (!format) {
            throw host::CallFileError(
                m_file + " ends in neither .csv, .json nor .jsonl; name its format with --format");
        }
        const auto columns = m_columns.empty() ? std::nullopt : std::optional(host::CallColumns(m_columns));
        // A device such as /dev/zero has no end.
        if (!std::filesystem::is_regular_file(m_file) && !std::filesystem::is_fifo(m_file)) {
            throw host::CallFileError("cannot read " + m_file + ": it is neither a file nor a pipe");
        }
        std::ifstream stream(m_file, std::ios::binary);
        if (!stream) {
            throw host::CallFileError("cannot read " + m_file + ": " +
                                      std::generic_category().message(errno));
        }
        host::ApiClient client(common.server());
        ProgressText progress;
        ImportResult result(m_file, progress);
        CallUpload upload(client, m_unviewed,
                          [&result](std::size_t row, const std::string& why) { result.fail(row, why); });
        const auto error = readFile(stream, *format, columns, reading(client), result, upload, progress);
        upload.finish();
        progress.clear();
        result.print(upload.counts(), m_json);
        if (error) {
            throw host::CallFileError("cannot import " + m_file + ": " + *error);
        }
        return statusOfOutput(!result.hasFailed());
    }

private:
    [[nodiscard]] host::CallReading reading(host::ApiClient& client) const {
        const auto zone =
            m_timezone.empty() ? std::optional(host::Zone::ofMachine()) : host::Zone::named(m_timezone);
        if (!zone) {
            throw host::CallFileError("there is no time zone " + m_timezone + "; a zone is Europe/Berlin");
        }
        host::CallReading reading;
        reading.time.toUtc = [zone = *zone](std::chrono::local_seconds time) { return zone.utcOf(time); };
        reading.time.format = m_timeFormat;
        reading.ownNumber = m_own.empty() ? client.get({"status"}).at("line").get<std::string>() : m_own;
        return reading;
    }

    /// Returns the error that ends the file before its end; the calls before it are added.
    [[nodiscard]] std::optional<std::string> readFile(std::istream& stream, host::CallFormat format,
                                                      const std::optional<host::CallColumns>& columns,
                                                      const host::CallReading& reading, ImportResult& result,
                                                      CallUpload& upload, ProgressText& progress) const {
        std::error_code ignored;
        const auto size = std::filesystem::file_size(m_file, ignored);
        try {
            host::readCalls(stream, format, columns, reading, [&](const host::CallRecord& record) {
                result.count();
                if (record.error.empty()) {
                    upload.add(record.row, record.call);
                } else {
                    result.fail(record.row, record.error);
                }
                const auto at = static_cast<std::streamoff>(stream.tellg());
                progress.show("importing " + m_file + ": " + std::to_string(result.read()) + " calls",
                              at > 0 && !ignored ? static_cast<std::size_t>(at) : 0, ignored ? 0 : size);
            });
        } catch (const host::CallFileError& error) {
            return error.what();
        }
        return std::nullopt;
    }

    std::string m_file;
    std::string m_format;
    std::string m_columns;
    std::string m_timezone;
    std::string m_timeFormat;
    std::string m_own;
    bool m_unviewed = false;
    bool m_json = false;
};

}  // namespace

std::unique_ptr<Command> makeImportCommand(CLI::App& app) {
    return std::make_unique<ImportCommand>(app);
}

}  // namespace calljournal
