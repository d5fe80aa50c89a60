#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/calls/LiveCallStoreIfc.h"
#include "host/data/HistoryRows.h"
#include "host/database/Database.h"
#include "journal-items/CallInfo.h"
#include "platform/journal-library/DataRequest.h"

namespace host {

/// The calls that one write request files: the newest call of each written item, if the link has seen it end.
/// On the thread of the request until `keep`; then on any thread, one at a time.
class CallFiling {
public:
    /// `request` and `calls` are borrowed, and outlive the object; `calls` may be null. Looks the calls up,
    /// with the delivery in progress on this thread.
    CallFiling(const journalxml::DataRequest& request, LiveCallStoreIfc* calls);

    /// The facts of the newest call of an item; null if the link has not seen it.
    [[nodiscard]] const CallFacts* factsOf(const CallInfo* newest) const;
    /// Adds the events of live calls that are not added yet, so that they are before the event of the filing.
    void addEvents(Database::Session& session);
    /// Removes the rows of the live calls, in the transaction that files them.
    void removeLiveCalls(Database::Session& session, const std::string& line) const;
    /// Call it if the calls are filed later, while their event is still being delivered: the link then
    /// forgets them, and their rows of live calls stay until they are filed.
    void keep();
    /// Call it when the transaction is done, or is given up.
    void setFiled(bool filed) const;

    /// The number of calls that have ended just now; an entry that is only changed has none.
    [[nodiscard]] std::size_t callCount() const noexcept;

    /// The newest occurrence of the item; null for an item without one.
    [[nodiscard]] static const CallInfo* newestOf(const journalxml::DataRequest::Item& item);

private:
    struct Filed {
        const CallInfo* newest = nullptr;
        std::optional<PhoneCallKey> call{};
        /// The call in the context of the delivery, or null.
        DeliveryContext::EndedCall* ended = nullptr;
        std::optional<CallFacts> facts{};
    };

    LiveCallStoreIfc* const m_calls;
    std::vector<Filed> m_filed;
    /// The number of the last event that was added.
    std::uint64_t m_lastEvent = 0;
};

}  // namespace host
