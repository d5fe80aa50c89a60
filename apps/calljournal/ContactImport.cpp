#include "apps/calljournal/ContactImport.h"

#include <optional>
#include <utility>

#include "host/remote/RemoteClient.h"
#include "host/remote/RemoteError.h"

namespace host {
namespace {

/// A batch is one transaction of the server: large enough to be quick, small enough not to keep a call waiting.
constexpr std::size_t kMaxBatch = 250;

}  // namespace

ContactImport::ContactImport(RemoteClient& client, Progress progress)
    : m_client(client), m_progress(std::move(progress)) {}

ContactImportReport ContactImport::run(ContactReader& reader) {
    m_report = ContactImportReport();
    while (const std::optional<ContactRecord> record = reader.next()) {
        ++m_report.read;
        take(*record);
    }
    send();
    return std::move(m_report);
}

void ContactImport::take(const ContactRecord& record) {
    for (const std::string& remark : record.remarks) {
        m_report.notes.push_back({record.line, remark, false});
    }
    std::string refusal = record.refusal;
    if (refusal.empty() && !m_batch.add(record.contact)) {
        send();
        refusal = m_batch.add(record.contact) ? "" : "it is too long";
    }
    if (!refusal.empty()) {
        m_report.notes.push_back({record.line, refusal, true});
        ++m_report.skipped;
    }
    if (m_batch.size() >= kMaxBatch) {
        send();
    }
}

void ContactImport::send() {
    if (m_batch.size() > 0) {
        const auto imported = journalxml::parsePhonebookImported(m_client.call(m_batch.text()));
        if (!imported) {
            throw RemoteError("calljournal could not store the contacts; its log says why. " +
                              std::to_string(m_report.added + m_report.changed) +
                              " are in the phonebook; importing the file again takes the rest");
        }
        m_report.added += imported->added;
        m_report.changed += imported->changed;
        m_report.unchanged += imported->unchanged;
    }
    m_batch = journalxml::PhonebookImport();
    m_progress(m_report);
}

}  // namespace host
