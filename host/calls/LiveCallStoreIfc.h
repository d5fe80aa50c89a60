#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/calls/DeliveryContext.h"
#include "host/calls/PhoneCall.h"

namespace host {

class DatabaseSession;

/// A call as an earlier run of the program has noted it.
struct NotedCall {
    PhoneCall call;
    /// The last time at which the link was up with the call.
    PhoneCall::Time seen{};
    /// The time at which the call ended, if the run did not file it.
    std::optional<PhoneCall::Time> ended{};
    bool endApproximate = false;
};

/// Notes the live calls of a line, so that a restart does not lose them. Any thread may call; no operation
/// waits for the database, except `read`.
class LiveCallStoreIfc {
public:
    LiveCallStoreIfc() = default;
    LiveCallStoreIfc(const LiveCallStoreIfc&) = delete;
    LiveCallStoreIfc& operator=(const LiveCallStoreIfc&) = delete;
    virtual ~LiveCallStoreIfc() = default;

    /// The calls that an earlier run has noted, in the order of their first events. Call it once, before
    /// `store`.
    [[nodiscard]] virtual std::vector<NotedCall> read() = 0;
    /// Notes a call that is new or has changed.
    virtual void store(const PhoneCall& call) = 0;
    /// Notes that the call is up and its monitor is on at `time`.
    virtual void confirm(const PhoneCallKey& call, PhoneCall::Time time) = 0;
    /// Notes the end of a call. It stays noted until it is filed.
    virtual void end(const PhoneCallKey& call, PhoneCall::Time time, bool approximate) = 0;
    /// The ended call that may be filed now, std::nullopt for any other. A call is known until `delivered`,
    /// and for a few seconds longer if it was not filed and may be filed later.
    [[nodiscard]] virtual std::optional<NotedCall> ended(const PhoneCallKey& call) const = 0;
    /// By the id under which the journal files the call; of several, the one that ended last.
    [[nodiscard]] virtual std::optional<NotedCall> ended(const std::string& callId) const = 0;
    /// Call it with true inside the transaction that files an ended call and removes its row: the row is not
    /// written again. Call it with false if that transaction fails.
    virtual void setFiled(const PhoneCallKey& call, bool filed) = 0;
    /// Adds the events of live calls that are not stored yet to those that wait for webhooks. Call it inside
    /// the transaction that files a call, before the event of the filing. Returns the number of the last one.
    virtual std::uint64_t addEvents(DatabaseSession& session) = 0;
    /// Call it with the number that `addEvents` has returned when its transaction is done.
    virtual void eventsAdded(std::uint64_t last) = 0;
    /// Call it after the event that ends the calls was delivered. One that may be filed later stays known for
    /// a few seconds, and noted for the next run if its event may be held back.
    virtual void delivered(const DeliveryContext& context) = 0;
};

}  // namespace host
