#include "host/contact-files/ContactImport.h"

#include <optional>
#include <utility>

namespace host {
namespace {

/// A batch is one transaction of the database: large enough to be fast, small enough not to delay a call.
constexpr std::size_t kMaxBatch = 250;

}  // namespace

ContactImport::ContactImport(ContactStore& store, Progress progress)
    : m_store(store), m_progress(std::move(progress)) {}

bool ContactImport::run(ContactReader& reader) {
    while (const std::optional<ContactRecord> record = reader.next()) {
        ++m_report.read;
        if (!take(*record)) {
            return false;
        }
    }
    return store();
}

bool ContactImport::take(const ContactRecord& record) {
    for (const std::string& remark : record.remarks) {
        m_report.notes.push_back({.line = record.line, .text = remark, .skipped = false});
    }
    std::string refusal = record.refusal;
    if (refusal.empty() && !m_store.add(record.contact)) {
        if (!store()) {
            return false;
        }
        refusal = m_store.add(record.contact) ? "" : "it is too long";
    }
    if (!refusal.empty()) {
        m_report.notes.push_back({.line = record.line, .text = refusal, .skipped = true});
        ++m_report.skipped;
        return true;
    }
    ++m_pending;
    return m_pending < kMaxBatch || store();
}

bool ContactImport::store() {
    if (std::exchange(m_pending, 0) > 0 && !m_store.store(m_report)) {
        return false;
    }
    m_progress(m_report);
    return true;
}

}  // namespace host
