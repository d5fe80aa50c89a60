#include <CLI/CLI.hpp>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>
#include <vector>

#include "apps/calljournal/client/ContactClient.h"
#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/ListOptions.h"
#include "apps/calljournal/command-line/OutputOption.h"
#include "apps/calljournal/output/CsvTable.h"
#include "apps/calljournal/output/JsonText.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "apps/calljournal/output/ProgressText.h"
#include "apps/calljournal/output/TerminalWidth.h"
#include "apps/calljournal/output/TextTable.h"
#include "host/api-client/ApiClient.h"
#include "host/contact-files/ContactFormat.h"
#include "host/contact-files/ContactImport.h"
#include "host/contact-files/ContactWriter.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"
#include "journal-items/Contact.h"

namespace calljournal {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();

std::string checkFormat(const std::string& file) {
    return host::contactFormatOf(file) ? std::string()
                                       : file + " is neither .vcf nor .csv, so its format is not known";
}

/// Prints the notes and the progress of an import to the standard error output.
class ImportProgress {
public:
    /// Both are borrowed and outlive this object; `stream` reads the file.
    ImportProgress(const std::string& file, std::istream& stream) : m_file(file), m_stream(stream) {
        std::error_code ignored;
        const auto size = std::filesystem::file_size(file, ignored);
        m_size = ignored ? 0 : size;
    }

    void print(const host::ImportReport& report) {
        for (; m_notified < report.notes.size(); ++m_notified) {
            const host::ImportReport::Note& note = report.notes[m_notified];
            m_text.clear();
            std::cerr << host::printable(m_file) << ":" << note.line << ": "
                      << (note.skipped ? "skipped: " : "") << host::printable(note.text) << std::endl;
        }
        const auto at = static_cast<std::streamoff>(m_stream.tellg());
        m_text.show("importing " + m_file + ": " + std::to_string(report.read) + " contacts",
                    at > 0 ? static_cast<std::size_t>(at) : 0, at > 0 ? m_size : 0);
    }

    /// Call before other output.
    void end() { m_text.clear(); }

private:
    const std::string& m_file;
    std::istream& m_stream;
    std::size_t m_size = 0;
    std::size_t m_notified = 0;
    ProgressText m_text;
};

std::string importText(const std::string& file, const host::ImportReport& report) {
    return std::to_string(report.read) + (report.read == 1 ? " contact" : " contacts") + " read from " +
           host::printable(file) + ": " + std::to_string(report.added) + " added, " +
           std::to_string(report.changed) + " changed, " + std::to_string(report.unchanged) +
           " known already, " + std::to_string(report.skipped) + " skipped\n";
}

class ContactsCommand final : public Command {
public:
    explicit ContactsCommand(CLI::App& app) {
        app.require_subcommand(1);
        m_import =
            addSubcommand(app, "import", "import contacts from a vCard or CSV file into the phonebook");
        m_import->add_option("file", m_file, "a file in vCard 3.0 or 4.0, or CSV")
            ->type_name("FILE.vcf|FILE.csv")
            ->required()
            ->check(checkFormat);
        m_import->add_flag("--json", m_json, "print one JSON object");
        addFields(*(m_add = addSubcommand(app, "add", "add a contact to the phonebook")));
        m_list = addSubcommand(app, "list", "print the phonebook");
        m_list
            ->add_option("--search", m_search,
                         "print only contacts with TEXT in their name, numbers, company or e-mail address")
            ->type_name("TEXT");
        addLimitOption(*m_list, m_limit, "print only the first N");
        m_output.addTo(*m_list);
        m_export = addSubcommand(app, "export", "print the phonebook as a file for other programs");
        addFormatOption(*m_export, m_format, {"vcf", "csv"}, "vcf (vCard 3.0) or csv");
    }

    int run(const CommonOptions& common) override {
        host::ApiClient client(common.server());
        if (m_import->parsed()) {
            return importFile(client);
        }
        if (m_add->parsed()) {
            return add(client);
        }
        return m_list->parsed() ? list(client) : exportAll(client);
    }

private:
    /// An option of `contacts add` and the member of the contact that it sets.
    struct Field {
        const char* option;
        const char* member;
        const char* help;
    };
    static constexpr std::array<Field, 12> kFields{{{"--first-name", "firstName", "the first name"},
                                                    {"--surname", "surname", "the surname"},
                                                    {"--office", "office", "the number at work"},
                                                    {"--mobile", "mobile", "the mobile number"},
                                                    {"--private", "private", "the number at home"},
                                                    {"--office2", "office2", "the second number at work"},
                                                    {"--email", "email", "the e-mail address"},
                                                    {"--company", "company", "the company"},
                                                    {"--job-function", "jobFunction", "the job"},
                                                    {"--group", "group", "the groups"},
                                                    {"--address", "address", "the address at work"},
                                                    {"--address2", "address2", "the address at home"}}};

    void addFields(CLI::App& app) {
        for (const Field& field : kFields) {
            app.add_option(field.option, m_fields[field.member], field.help)->type_name("TEXT");
        }
        app.add_flag("--json", m_json, "print one JSON object");
    }

    int add(host::ApiClient& client) const {
        Json fields = Json::object();
        for (const auto& [member, value] : m_fields) {
            if (!value.empty()) {
                fields[member] = value;
            }
        }
        const Json contact = client.post({"contacts"}, fields);
        if (m_json) {
            std::cout << host::jsonText(contact) << "\n";
        } else {
            const std::string name = nameIn(contact);
            std::cout << host::printable(name.empty() ? textIn(contact, "company") : name)
                      << " is in the phonebook\n";
        }
        return statusOfOutput();
    }

    /// Options of all commands ("--data") may follow the options of this one.
    static CLI::App* addSubcommand(CLI::App& app, const char* name, const char* help) {
        CLI::App* const sub = app.add_subcommand(name, help);
        sub->fallthrough();
        return sub;
    }

    int importFile(host::ApiClient& client) const {
        std::error_code error;
        if (std::filesystem::exists(m_file, error) && !std::filesystem::is_regular_file(m_file, error)) {
            throw host::ContactFileError("cannot read " + m_file + ": it is not a regular file");
        }
        std::ifstream stream(m_file, std::ios::binary);
        if (!stream || stream.peek() == std::ifstream::traits_type::eof()) {
            const int reason = errno;
            throw host::ContactFileError(
                "cannot read " + m_file + ": " +
                (stream.is_open() ? "the file is empty" : std::generic_category().message(reason)));
        }
        ImportProgress progress(m_file, stream);
        ContactUpload contacts(client);
        host::ContactImport import(contacts,
                                   [&progress](const host::ImportReport& each) { progress.print(each); });
        const bool done = import.run(*readerOf(stream));
        progress.end();
        const host::ImportReport& report = import.report();
        if (!done) {
            throw host::RemoteError("calljournal could not store the contacts; see its log. " +
                                    std::to_string(report.added + report.changed) +
                                    " are in the phonebook; importing the file again stores the rest");
        }
        std::cout << (m_json ? host::jsonText(host::importJson(report)) + "\n" : importText(m_file, report));
        return statusOfOutput(report.read > report.skipped);
    }

    [[nodiscard]] std::unique_ptr<host::ContactReader> readerOf(std::istream& stream) const {
        try {
            return host::makeContactReader(stream, host::contactFormatOf(m_file).value());
        } catch (const host::ContactFileError& error) {
            throw host::ContactFileError("cannot import " + m_file + ": " + error.what());
        }
    }

    int list(host::ApiClient& client) const {
        Json contacts = Json::array();
        std::vector<TableRow> rows;
        const std::size_t limit = m_limit > 0 ? m_limit : kNoLimit;
        const std::size_t total = visitContacts(client, m_search, limit, [&](const Json& contact) {
            if (m_output.isJson()) {
                contacts.push_back(contact);
            } else {
                rows.push_back(
                    {false,
                     {nameIn(contact), textIn(contact, "company"), textIn(contact, "office"),
                      textIn(contact, "mobile"), textIn(contact, "private"), textIn(contact, "office2")}});
            }
        });
        const std::vector<std::string> titles{"NAME", "COMPANY", "OFFICE", "MOBILE", "PRIVATE", "OFFICE 2"};
        if (m_output.isCsv()) {
            std::cout << csvTable(titles, rows);
        } else if (m_output.isJson()) {
            std::cout << host::jsonText({{"total", total}, {"contacts", std::move(contacts)}}) << "\n";
        } else if (rows.empty()) {
            std::cout << (m_search.empty() ? "no contacts in the phonebook\n" : "no contacts found\n");
        } else {
            std::cout << tableText(titles, rows, {terminalWidth(), {1, 0}, isColoured()});
            if (rows.size() < total) {
                std::cout << "(" << rows.size() << " of " << total << ")\n";
            }
        }
        return statusOfOutput();
    }

    int exportAll(host::ApiClient& client) const {
        const host::ContactFormat format =
            m_format == "csv" ? host::ContactFormat::eCsv : host::ContactFormat::eVCard;
        std::cout << host::contactFileHead(format);
        visitContacts(client, {}, kNoLimit, [format](const Json& contact) {
            std::cout << host::contactFileEntry(format, contactFrom(contact));
        });
        return statusOfOutput();
    }

    CLI::App* m_import = nullptr;
    CLI::App* m_add = nullptr;
    CLI::App* m_list = nullptr;
    CLI::App* m_export = nullptr;
    std::string m_file;
    std::map<std::string, std::string> m_fields;
    std::string m_search;
    std::size_t m_limit = 0;
    std::string m_format;
    bool m_json = false;
    OutputOption m_output;
};

}  // namespace

std::unique_ptr<Command> makeContactsCommand(CLI::App& app) {
    return std::make_unique<ContactsCommand>(app);
}

}  // namespace calljournal
