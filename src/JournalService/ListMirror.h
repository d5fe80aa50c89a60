#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <type_traits>

#include "journal-items/CallBackItem.h"
#include "src/JournalService/ListTable.h"

class CallListDatabaseAdapter;

namespace journal {

/// Writes every change of a list to the database.
///
/// Threads: any. Callers may hold one list lock; a call waits until the change is durable. A database that answers
/// "failed" leaves the memory as it is: the change stays in the list and is logged.
class ListMirror {
public:
    /// `adapter` is borrowed and outlives the mirror.
    explicit ListMirror(CallListDatabaseAdapter& adapter) : m_adapter(adapter) {}
    ListMirror(const ListMirror&) = delete;
    ListMirror& operator=(const ListMirror&) = delete;
    ~ListMirror() = default;

    // One item. An item that is written for the first time takes the unique id that the database answers, so that
    // its next write changes its row. `requestType` is `WRITEREQUEST` or `DELETEREQUEST` of the adapter's helper.
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
        const std::string answered =
            updateEntry(ListTable<Item>::kBody(item, requestType), requestType, ListTable<Item>::kName);
        if constexpr (!std::is_same_v<Item, CallBackItem>) {
            if (!answered.empty() && requestType == CallListDatabaseAdapterHelper::WRITEREQUEST) {
                item.setUniqueId(answered);
            }
        }
    }

    /// The item as an `ENTRY` field, to be gathered for one request of many entries.
    template <typename Item>
    [[nodiscard]] static std::string entry(const Item& item, const std::string& requestType) {
        return asEntry(ListTable<Item>::kBody(item, requestType));
    }

    /// Deletes the whole table.
    template <typename Item>
    void deleteAll() {
        deleteWholeTable(ListTable<Item>::kName);
    }

    /// Sends one item's body; answers the last unique id of the answer, empty when it failed.
    std::string updateEntry(const std::string& body, const std::string& requestType,
                            const std::string& table);
    /// Sends `ENTRY` fields in one request; answers as `updateEntry`. Nothing is sent without entries.
    std::string updateEntries(const std::string& entries, const std::string& requestType,
                              const std::string& table);

    /// The last unique id that the database gave; empty before the first.
    [[nodiscard]] std::string lastUniqueId() const;

    /// Something new was written since the visitor's call log was saved last.
    std::atomic<bool> m_visitorCallLogSavePending{false};

private:
    [[nodiscard]] static std::string asEntry(const std::string& body);
    void deleteWholeTable(const std::string& table);

    CallListDatabaseAdapter& m_adapter;

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    std::string m_lastUniqueId;
};

}  // namespace journal
