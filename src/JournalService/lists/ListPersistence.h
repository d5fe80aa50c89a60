#pragma once

#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "journal-items/CallBackItem.h"
#include "platform/journal-library/CallListDatabaseAdapter.h"
#include "platform/journal-library/ListXml.h"

namespace journal {

/// Writes every change of a list to the database, and reads a table that the lists do not hold whole.
///
/// A database that answers "failed" leaves the memory as it is: the change stays in the list and is logged,
/// and the mirror remembers what is to be offered again: which items the database lacks or has an old state
/// of, and what it was to delete. A refused deletion is repeated once, before the table is read; when the
/// whole table was to be deleted, before the next change of it as well, since a repeated deletion must not
/// take what was written after it.
///
/// Threads: any, one change at a time, which the lists' `Change` sees to. Callers may hold one list lock; a
/// call waits until the change is durable.
class ListPersistence {
public:
    /// `adapter` is borrowed and outlives the mirror. `onWritten`, if given, is called on the writing thread
    /// after each write that the database gave a unique id.
    explicit ListPersistence(CallListDatabaseAdapter& adapter, std::function<void()> onWritten = {})
        : m_adapter(adapter), m_onWritten(std::move(onWritten)) {}
    ListPersistence(const ListPersistence&) = delete;
    ListPersistence& operator=(const ListPersistence&) = delete;
    ~ListPersistence() = default;

    // One item. An item that is written for the first time takes the unique id that the database answers, so
    // that its next write changes its row. `requestType` is `WRITEREQUEST` or `DELETEREQUEST` of the
    // adapter's helper.
    void updateMissedEntry(MissedCallItem& item, const std::string& requestType) {
        update(item, requestType);
    }
    void updateDialledEntry(DialledCallItem& item, const std::string& requestType) {
        update(item, requestType);
    }
    void updateReceivedEntry(ReceivedCallItem& item, const std::string& requestType) {
        update(item, requestType);
    }
    void updateForwardedEntry(ForwardedCallItem& item, const std::string& requestType) {
        update(item, requestType);
    }

    /// The same, for code that treats the lists alike.
    template <typename Item>
    void update(Item& item, const std::string& requestType) {
        const std::optional<std::string> answered =
            send(entry(item, requestType), requestType, ListXml<Item>::kTable);
        const bool isWrite = requestType == CallListDatabaseAdapterHelper::WRITEREQUEST;
        recordRefused(keyOf(item), isWrite && !answered);
        if constexpr (!std::is_same_v<Item, CallBackItem>) {
            if (isWrite && answered && !answered->empty()) {
                item.setUniqueId(*answered);
            }
        }
    }

    /// Writes several items that are stored already in one request.
    template <typename Item>
    void rewrite(const std::vector<const Item*>& items) {
        const std::string& write = CallListDatabaseAdapterHelper::WRITEREQUEST;
        std::string entries;
        for (const Item* item : items) {
            entries += entry(*item, write);
        }
        const bool refused = !items.empty() && !send(entries, write, ListXml<Item>::kTable);
        for (const Item* item : items) {
            recordRefused(keyOf(*item), refused);
        }
    }

    /// The whole table, newest first; false when it cannot be read.
    template <typename Item>
    [[nodiscard]] bool read(std::deque<Item>& items) {
        using Table = ListXml<Item>;
        // More than a list keeps: what has not been dropped from the table in time is to be seen, too.
        constexpr unsigned kRows = 2 * CallListDatabaseAdapterHelper::kListRows;
        repeatDeletion(Table::kTable);
        return Table::kParse(
            m_adapter.processRequest(CallListDatabaseAdapterHelper::readCallList(Table::kTable, kRows)),
            items);
    }

    /// Offers what the database has refused to delete to it again, once; what it refuses then stays, with a
    /// line in the log.
    template <typename Item>
    void repeatDeletion() {
        repeatDeletion(ListXml<Item>::kTable);
    }
    /// Whether the last write of the item, as it is named now, was refused.
    template <typename Item>
    [[nodiscard]] bool isRefused(const Item& item) const {
        const std::lock_guard lock(m_mutex);
        return m_refused.contains(keyOf(item));
    }
    /// Forgets the refused writes, when none of the items is left that they were of.
    void forgetRefused();

    /// The item as an `ENTRY` field, to be gathered for one request of many entries.
    template <typename Item>
    [[nodiscard]] static std::string entry(const Item& item, const std::string& requestType) {
        return asEntry(ListXml<Item>::kBody(item, requestType));
    }

    /// Deletes the whole table.
    template <typename Item>
    void deleteAll() {
        deleteWholeTable(ListXml<Item>::kTable);
    }

    /// Sends one item's body; answers the last unique id of the answer, empty when it failed.
    std::string updateEntry(const std::string& body, const std::string& requestType,
                            const std::string& table);
    /// Sends `ENTRY` fields in one request; answers as `updateEntry`. Nothing is sent without entries.
    std::string updateEntries(const std::string& entries, const std::string& requestType,
                              const std::string& table);

    /// The last unique id that the database gave; empty before the first.
    [[nodiscard]] std::string lastUniqueId() const;

private:
    template <typename Item>
    [[nodiscard]] static std::string keyOf(const Item& item) {
        return std::string(ListXml<Item>::kTable) + ' ' + item.getEntryId();
    }
    void recordRefused(const std::string& key, bool refused);
    void repeatDeletion(const std::string& table);
    void recordRefusedDeletion(const std::string& entries, const std::string& table);
    void forgetDeletion(const std::string& table);
    [[nodiscard]] std::string refusedDeletion(const std::string& table) const;
    // Nothing when the database refused; otherwise the last unique id, empty when the answer has none. `send`
    // remembers a refused deletion.
    std::optional<std::string> send(const std::string& entries, const std::string& requestType,
                                    const std::string& table);
    std::optional<std::string> exchange(const std::string& entries, const std::string& requestType,
                                        const std::string& table);
    [[nodiscard]] static std::string asEntry(const std::string& body);
    void deleteWholeTable(const std::string& table);

    CallListDatabaseAdapter& m_adapter;
    const std::function<void()> m_onWritten;

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    std::string m_lastUniqueId;
    std::set<std::string> m_refused;
    /// By table, as the entries of one request.
    std::map<std::string, std::string> m_refusedDeletions;
};

}  // namespace journal
