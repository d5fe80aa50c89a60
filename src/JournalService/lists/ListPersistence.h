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

/// The kind of a request that changes the database.
enum class RequestType { eWrite, eDelete };

/// Writes every change of a list to the database, and reads a table that the lists do not hold whole.
///
/// A database that responds "failed" leaves the memory as it is: the change stays in the list and is logged,
/// and this class records what is to be offered again: the items that the database lacks or has an old state
/// of, and what it was to delete. A refused deletion is repeated once, before the table is read; a refused
/// deletion of the whole table is repeated before the next change of it as well, since a repeated deletion
/// must not take what was written after it.
///
/// Thread-safe for one change at a time, which `ListTransaction` ensures. The caller may hold one list lock;
/// an operation waits until the change is durable.
class ListPersistence {
public:
    /// `adapter` is borrowed and outlives this object. `onWritten`, if given, is called on the writing thread
    /// after each write that the database gave a unique id.
    explicit ListPersistence(CallListDatabaseAdapter& adapter, std::function<void()> onWritten = {})
        : m_adapter(adapter), m_onWritten(std::move(onWritten)) {}
    ListPersistence(const ListPersistence&) = delete;
    ListPersistence& operator=(const ListPersistence&) = delete;
    ~ListPersistence() = default;

    // One item. An item that is written for the first time takes the unique id in the database's response, so
    // that its next write changes its row.
    void updateMissedEntry(MissedCallItem& item, RequestType requestType) { update(item, requestType); }
    void updateDialledEntry(DialledCallItem& item, RequestType requestType) { update(item, requestType); }
    void updateReceivedEntry(ReceivedCallItem& item, RequestType requestType) { update(item, requestType); }
    void updateForwardedEntry(ForwardedCallItem& item, RequestType requestType) { update(item, requestType); }

    /// The same for an item of any list.
    template <typename Item>
    void update(Item& item, RequestType requestType) {
        const std::optional<std::string> uniqueId =
            send(entry(item, requestType), requestType, ListXml<Item>::kTable);
        const bool isWrite = requestType == RequestType::eWrite;
        recordRefused(keyOf(item), isWrite && !uniqueId);
        if constexpr (!std::is_same_v<Item, CallBackItem>) {
            if (isWrite && uniqueId && !uniqueId->empty()) {
                item.setUniqueId(*uniqueId);
            }
        }
    }

    /// Writes several items that have a row already, in one request.
    template <typename Item>
    void rewrite(const std::vector<const Item*>& items) {
        std::string entries;
        for (const Item* item : items) {
            entries += entry(*item, RequestType::eWrite);
        }
        const bool refused = !items.empty() && !send(entries, RequestType::eWrite, ListXml<Item>::kTable);
        for (const Item* item : items) {
            recordRefused(keyOf(*item), refused);
        }
    }

    /// Deletes the rows of several items in one request.
    template <typename Item>
    void deleteRows(const std::vector<Item>& items) {
        std::string entries;
        for (const Item& item : items) {
            entries += entry(item, RequestType::eDelete);
        }
        updateEntries(entries, RequestType::eDelete, ListXml<Item>::kTable);
    }

    /// Reads the whole table, newest first; false when it cannot be read.
    template <typename Item>
    [[nodiscard]] bool read(std::deque<Item>& items) {
        // More than a list keeps, for the rows that were not dropped from the table in time.
        constexpr unsigned kRows = 2 * CallListDatabaseAdapterHelper::kListRows;
        repeatDeletion(ListXml<Item>::kTable);
        return ListXml<Item>::kParse(m_adapter.processRequest(CallListDatabaseAdapterHelper::readCallList(
                                         ListXml<Item>::kTable, kRows)),
                                     items);
    }

    /// Offers what the database has refused to delete to it again, once; what it refuses then stays, with a
    /// line in the log.
    template <typename Item>
    void repeatDeletion() {
        repeatDeletion(ListXml<Item>::kTable);
    }
    /// True if the last write of the item under its present entry id was refused.
    template <typename Item>
    [[nodiscard]] bool isRefused(const Item& item) const {
        const std::lock_guard lock(m_mutex);
        return m_refused.contains(keyOf(item));
    }
    /// Forgets the refused writes. Call when none of their items is left.
    void forgetRefused();

    /// The item as an `ENTRY` field, for a request of many entries.
    template <typename Item>
    [[nodiscard]] static std::string entry(const Item& item, RequestType requestType) {
        return asEntry(ListXml<Item>::kBody(item, textOf(requestType)));
    }

    /// Deletes every row of the table.
    template <typename Item>
    void clearTable() {
        clearTable(ListXml<Item>::kTable);
    }

    /// Sends one item's body; returns the last unique id of the response, or an empty string when it failed.
    std::string updateEntry(const std::string& body, RequestType requestType, const std::string& table);
    /// Sends `ENTRY` fields in one request; returns as `updateEntry`. Without entries it sends no request.
    std::string updateEntries(const std::string& entries, RequestType requestType, const std::string& table);

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
    // Both return std::nullopt when the database refused, otherwise the last unique id, which is empty when
    // the response has none. `send` records a refused deletion.
    std::optional<std::string> send(const std::string& entries, RequestType requestType,
                                    const std::string& table);
    std::optional<std::string> sendOnce(const std::string& entries, RequestType requestType,
                                        const std::string& table);
    [[nodiscard]] static std::string asEntry(const std::string& body);
    [[nodiscard]] static const char* textOf(RequestType requestType) noexcept;
    void clearTable(const std::string& table);

    CallListDatabaseAdapter& m_adapter;
    const std::function<void()> m_onWritten;

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    std::string m_lastUniqueId;
    std::set<std::string> m_refused;
    // By table, as the entries of one request.
    std::map<std::string, std::string> m_refusedDeletions;
};

}  // namespace journal
