#include "host/data/JournalChange.h"

#include <variant>

#include "host/calls/DeliveryContext.h"
#include "host/data/CallBackRows.h"
#include "host/data/SettingRows.h"
#include "host/database/RowId.h"
#include "host/journal-events/EventQueue.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"

namespace host {
namespace {

using journalxml::DataRequest;
using Words = CallListDatabaseAdapterHelper;

/// The unique id of a written item; empty for a callback, which has none.
std::string uniqueIdOf(const DataRequest::Item& item) {
    return std::visit(
        [](const auto& one) {
            if constexpr (std::is_same_v<std::decay_t<decltype(one)>, CallBackItem>) {
                return std::string();
            } else {
                return one.getUniqueId();
            }
        },
        item);
}

void deleteCallBacks(CallBackRows rows, const DataRequest& request) {
    if (request.allEntries) {
        rows.removeAll();
    }
    for (const DataRequest::Key& key : request.keys) {
        rows.remove(key.entryId);
    }
}

}  // namespace

JournalChange::JournalChange(DataRequest request, std::shared_ptr<Line> line, std::chrono::seconds phoneAhead)
    : m_request(std::move(request)),
      m_line(std::move(line)),
      m_phoneAhead(phoneAhead),
      m_filing(m_request, m_line->calls) {
    if (const DeliveryContext* const delivery = DeliveryContext::current()) {
        m_isDelivered = true;
        if (delivery->establishes && delivery->time) {
            m_calledBackAt = std::chrono::floor<std::chrono::seconds>(*delivery->time);
        }
    }
}

HistoryRows::Context JournalChange::context() const {
    return {m_line->device, m_line->digits, m_phoneAhead, m_line->events};
}

void JournalChange::carryOut(Database::Session& session) {
    const HistoryRows::Context context = this->context();
    CallRows calls(session, context);
    m_filing.addEvents(session);
    m_rewritten = m_line->rewritten;
    const auto list = listOfTable(m_request.schema);
    m_isEviction = m_isEviction || (list && isEvictionFrom(*list, session));
    m_itemChanges.first = session.itemChanges();
    if (m_request.reason == DataRequest::Reason::eDelete && !m_isEviction) {
        m_rewritten = detachRewritten(calls);
    }
    const std::string changed = change(session, calls);
    if (m_request.reason == DataRequest::Reason::eWrite) {
        attachRewritten(calls, changed);
        m_rewritten.reset();
    }
    m_itemChanges.second = session.itemChanges();
    m_filing.removeLiveCalls(session, m_line->device);
    if (calls.history().removeTraces()) {
        session.emptyLogAfterwards();
    }
    if (!m_isKept) {
        m_lastUniqueId = changed;
    }
}

bool JournalChange::isEviction(Database::Session& session) {
    const auto list = listOfTable(m_request.schema);
    m_isEviction = list && isEvictionFrom(*list, session);
    return m_isEviction;
}

bool JournalChange::isEvictionFrom(ListName list, Database::Session& session) const {
    return m_request.reason == DataRequest::Reason::eDelete && m_request.keys.size() == 1 &&
           m_line->written == std::pair(list, m_thread) &&
           countOf(list, session) > std::int64_t{Words::kListRows};
}

std::int64_t JournalChange::countOf(ListName list, Database::Session& session) const {
    const std::uint64_t changes = session.itemChanges();
    if (!m_line->count || m_line->count->list != list || m_line->count->changes != changes) {
        const HistoryRows::Context context = this->context();
        m_line->count = {.list = list, .entries = CallRows(session, context).count(list), .changes = changes};
    }
    const auto waiting = m_line->waiting.find(list);
    return m_line->count->entries - (waiting == m_line->waiting.end() ? 0 : waiting->second);
}

/// Keeps the count if the change has added one entry to that list, or removed one.
void JournalChange::noteCount() const {
    const auto [before, after] = m_itemChanges;
    auto& count = m_line->count;
    const bool isOne = m_request.items.size() + m_request.keys.size() == 1 && after == before + 1;
    if (count && count->changes == before && listOfTable(m_request.schema) == count->list && isOne) {
        count->entries += m_request.items.empty() ? -1 : 1;
        count->changes = after;
    }
}

void JournalChange::keep(Database& database) {
    m_isKept = true;
    m_newIds.resize(m_request.items.size());
    for (std::size_t at = 0; at < m_request.items.size(); ++at) {
        const DataRequest::Item& item = m_request.items[at];
        if (std::holds_alternative<CallBackItem>(item)) {
            continue;
        }
        m_lastUniqueId = uniqueIdOf(item);
        if (m_lastUniqueId.empty()) {
            m_newIds[at] = database.newItemId();
            m_lastUniqueId = host::uniqueIdOf(*m_newIds[at]);
        } else {
            m_newIds[at] = rowIdOf(m_lastUniqueId);  // for a row whose first change was given up
        }
    }
    if (!m_request.keys.empty()) {
        m_lastUniqueId = m_request.keys.back().uniqueId;
    }
    m_filing.keep();
    if (m_isEviction) {
        m_waitingIn = listOfTable(m_request.schema);
        ++m_line->waiting[*m_waitingIn];
    }
}

void JournalChange::done(bool stored) {
    if (stored) {
        noteCount();
        if (m_line->events != nullptr) {
            m_line->events->committed();
        }
        m_line->rewritten = std::move(m_rewritten);
        if (!m_isEviction) {
            m_line->written = written();
        }
    }
    if (m_waitingIn) {
        --m_line->waiting[*m_waitingIn];
    }
    m_filing.setFiled(stored);
}

/// The list in which the request writes an entry.
std::optional<std::pair<ListName, std::thread::id>> JournalChange::written() const {
    const auto list = listOfTable(m_request.schema);
    const bool writesOne =
        list && m_request.reason == DataRequest::Reason::eWrite && m_request.items.size() == 1;
    return writesOne ? std::optional(std::pair(*list, m_thread)) : std::nullopt;
}

bool JournalChange::leavesEvictions() const {
    return written().has_value();
}

std::string JournalChange::change(Database::Session& session, CallRows& calls) const {
    const auto list = listOfTable(m_request.schema);
    switch (m_request.reason) {
        case DataRequest::Reason::eWrite: return writeItems(session, calls);
        case DataRequest::Reason::eDelete:
            if (list && m_request.allEntries && m_line->events != nullptr) {
                m_line->events->addListDeleted(session, *list);
            }
            if (list && list != ListName::eCallbacks) {
                return deleteCalls(calls, *list);
            }
            deleteCallBacks(CallBackRows(session, m_line->device), m_request);
            return {};
        case DataRequest::Reason::eUpdate: {
            SettingRows settings(session, SettingRows::Table::eJournalSettings, m_line->device);
            for (const auto& setting : m_request.settings) {
                settings.write(setting);
            }
            return {};
        }
        case DataRequest::Reason::eRead: break;
    }
    return {};
}

/// Returns the last unique id.
std::string JournalChange::writeItems(Database::Session& session, CallRows& calls) const {
    std::string lastUniqueId;
    for (std::size_t at = 0; at < m_request.items.size(); ++at) {
        const DataRequest::Item& item = m_request.items[at];
        const CallFacts* const facts = m_filing.factsOf(CallFiling::newestOf(item));
        const auto newId = at < m_newIds.size() ? m_newIds[at] : std::nullopt;
        std::visit(
            [&](const auto& one) {
                if constexpr (std::is_same_v<std::decay_t<decltype(one)>, CallBackItem>) {
                    CallBackRows(session, m_line->device).write(one);
                } else {
                    lastUniqueId = calls.write(one, facts, newId);
                }
            },
            item);
    }
    return lastUniqueId;
}

/// The treatment of the calls of an entry that the journal deletes:
///  - of one that the journal drops from a list that is too long, and of the missed entry of a party that is
///    called back now, they stay in the history;
///  - the switch's log, whose events are delivered, has the listed ones only;
///  - a user deletes all of them.
CallRows::Calls JournalChange::callsOfDeleted(ListName list) const {
    using Fate = CallRows::Calls::Fate;
    if (m_isEviction) {
        return {.fate = Fate::eKept};
    }
    if (list == ListName::eMissed && m_calledBackAt) {
        return {.fate = Fate::eKept, .calledBackAt = m_calledBackAt};
    }
    return {.fate = m_isDelivered ? Fate::eListedDeleted : Fate::eDeleted};
}

/// Deletes rows of a call list; returns the last unique id.
std::string JournalChange::deleteCalls(CallRows& calls, ListName list) const {
    if (m_request.allEntries) {
        return calls.removeAll(list).value_or("");
    }
    std::string lastUniqueId;
    for (const DataRequest::Key& key : m_request.keys) {
        lastUniqueId =
            calls.remove(list, key.uniqueId, key.entryId, callsOfDeleted(list)).value_or(lastUniqueId);
    }
    return lastUniqueId;
}

/// The journal shortens an entry of a group, as the switch's log demands, by deleting and writing it. Its
/// older calls and what the link knows of them stay meanwhile.
JournalChange::Rewritten JournalChange::detachRewritten(CallRows& calls) const {
    const bool deletesOne =
        m_isDelivered && m_request.keys.size() == 1 && listOfTable(m_request.schema) == ListName::eMissed;
    const auto group = deletesOne ? calls.rewrittenGroup(m_request.keys.front().uniqueId) : std::nullopt;
    if (!group) {
        return std::nullopt;
    }
    return Rewritten({m_request.keys.front().entryId, calls.history().detach(*group)});
}

void JournalChange::attachRewritten(CallRows& calls, const std::string& uniqueId) const {
    const auto* const item =
        m_request.items.size() == 1 ? std::get_if<MissedCallItem>(&m_request.items.front()) : nullptr;
    if (m_rewritten && item != nullptr && item->getUniqueId().empty() &&
        item->getEntryId() == m_rewritten->first) {
        calls.history().attach(rowIdOf(uniqueId).value_or(0), m_rewritten->second);
    }
}

}  // namespace host
