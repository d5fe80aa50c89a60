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

/// Writes every change of a list to the database, and reads the tables of which a list loads a part only.
///
/// When the database responds "failed", the change stays in the list and an error is logged. This class
/// records the rejected changes for a retry: the items whose row is missing or out of date, and the
/// deletions. A rejected deletion is retried once, before the table is read. A rejected deletion of the whole
/// table is also retried before the next change of the table, because a retry must not delete entries that
/// were written later.
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
        recordRejected(keyOf(item), isWrite && !uniqueId);
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
        const bool rejected = !items.empty() && !send(entries, RequestType::eWrite, ListXml<Item>::kTable);
        for (const Item* item : items) {
            recordRejected(keyOf(*item), rejected);
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
        retryDeletion(ListXml<Item>::kTable);
        return ListXml<Item>::kParse(m_adapter.processRequest(CallListDatabaseAdapterHelper::readCallList(
                                         ListXml<Item>::kTable, kRows)),
                                     items);
    }

    /// Retries the deletions that the database rejected, once. When it rejects them again, the rows stay and
    /// an error is logged.
    template <typename Item>
    void retryDeletion() {
        retryDeletion(ListXml<Item>::kTable);
    }
    /// True if the last write of the item under its current entry id was rejected.
    template <typename Item>
    [[nodiscard]] bool isRejected(const Item& item) const {
        const std::lock_guard lock(m_mutex);
        return m_rejectedWrites.contains(keyOf(item));
    }
    /// Clears the record of rejected writes. Call when the retry of every one has succeeded.
    void clearRejectedWrites();

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
    void recordRejected(const std::string& key, bool rejected);
    void retryDeletion(const std::string& table);
    void recordRejectedDeletion(const std::string& entries, const std::string& table);
    void clearRejectedDeletion(const std::string& table);
    [[nodiscard]] std::string rejectedDeletion(const std::string& table) const;
    // Both return std::nullopt when the database rejected the request, otherwise the last unique id, which is
    // empty when the response has none. `send` records a rejected deletion.
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
    std::set<std::string> m_rejectedWrites;
    // By table, as the entries of one request.
    std::map<std::string, std::string> m_rejectedDeletions;
};

}  // namespace journal
