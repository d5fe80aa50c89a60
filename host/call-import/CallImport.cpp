#include "host/call-import/CallImport.h"

#include <algorithm>
#include <list>

#include "host/data/CallRows.h"
#include "journal-items/Occurrences.h"
#include "journalservice/JournalServiceIfc.h"

namespace host {
namespace {

/// A transaction is large enough to be fast, and small enough not to delay a call.
constexpr std::size_t kMaxBatch = 1000;
constexpr std::int64_t kListedCalls = CallItemWithPicture::kMaxOccurrences;

constexpr const char* kListOfEntry = "SELECT list FROM call_item WHERE id = ?";

/// Sets the unviewed mark of a missed item; returns true if that changes it.
bool markUnviewed(MissedCallItem& item, bool unviewed) {
    const bool changes = unviewed && item.getViewed();
    item.setViewed(item.getViewed() && !unviewed);
    return changes;
}
template <typename Item>
bool markUnviewed(Item& /*item*/, bool /*unviewed*/) {
    return false;
}

}  // namespace

std::optional<CallImport::Counts> CallImport::add(const std::vector<Call>& calls, bool unviewed) {
    Counts counts;
    CallInsertion::Added added;
    for (std::size_t at = 0; at < calls.size(); at += kMaxBatch) {
        const Call* const begin = calls.data() + at;
        if (!addBatch(begin, begin + std::min(kMaxBatch, calls.size() - at), unviewed, added, counts)) {
            return std::nullopt;
        }
    }
    return counts;
}

bool CallImport::addBatch(const Call* begin, const Call* end, bool unviewed, CallInsertion::Added& added,
                          Counts& counts) {
    const StoredEntries::Sources& sources = m_entries.sources();
    // A rolled-back batch has changed neither.
    ImportRun run = m_run;
    Counts batch;
    const bool done = sources.database.write("importing calls", [&](Database::Session& session) {
        CallInsertion insertion(session, sources.line, sources.digits, added);
        if (!m_lastId) {
            m_lastId = insertion.lastId();
        }
        std::vector<ImportedEntries::NewCall> calls;
        for (const Call* call = begin; call != end; ++call) {
            if (const auto id = insertion.add(*call)) {
                const bool isBack = *id == call->id && *id <= *m_lastId;
                const bool isNew = call->list == ListName::eMissed && !call->viewed && (unviewed || isBack);
                calls.push_back({*id, call, isNew});
            }
        }
        batch.imported = calls.size();
        batch.known = static_cast<std::size_t>(end - begin) - calls.size();
        if (!calls.empty()) {
            ImportedEntries(session, sources.line, sources.digits, run).take(calls);
        }
    });
    if (done) {
        m_run = std::move(run);
        counts.imported += batch.imported;
        counts.known += batch.known;
    }
    return done;
}

void CallImport::publish() {
    if (!m_run.made.empty()) {
        static_cast<void>(m_entries.sources().journal.refreshCallLists());
        // From now on they are entries that the journal may hold.
        m_run.made.clear();
    }
}

void CallImport::finish() {
    const StoredEntries::Sources& sources = m_entries.sources();
    // The journal learns of the new entries first: the next call of their parties belongs to them.
    static_cast<void>(sources.journal.refreshCallLists());
    for (const std::int64_t entry : m_run.extended) {
        std::optional<ListName> list;
        static_cast<void>(sources.database.readAside("reading an entry", [&](Database::Session& session) {
            Query row = session.query(kListOfEntry);
            if (row.bind(entry).next()) {
                list = static_cast<ListName>(row.smallNumber());
            }
        }));
        if (list) {
            withItemOf(*list, [&]<typename Item>() {
                if constexpr (!std::is_same_v<Item, CallBackItem>) {
                    takeOver<Item>(entry, m_run.unviewed.contains(entry));
                }
            });
        }
    }
    m_run = {};
    m_lastId.reset();
    if (sources.resync) {
        sources.resync();
    }
}

template <typename Item>
void CallImport::takeOver(std::int64_t entry, bool unviewed) {
    const bool done = m_entries.change<Item>(
        entry, false, [&](Database::Session& session, const HistoryRows::Context& context, Item& item) {
            std::list<typename ListTraits<Item>::Info> newest;
            HistoryRows(session, context).readNewest(entry, kListedCalls, newest);
            const bool viewedChanges = markUnviewed(item, unviewed);
            const bool callsChange = newest != occurrencesOf(item);
            setOccurrences(item, newest);
            return viewedChanges || callsChange;
        });
    static_cast<void>(done);  // the log has the reason; the history has the calls
}

}  // namespace host
