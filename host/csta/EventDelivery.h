#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include "host/calls/DeliveryContext.h"
#include "host/csta-events/OtherDeviceEvents.h"

class CSTAEvent;
class CSTAEventIfc;
class Service;

namespace host {

/// A receiver of events and its validity. Shared by the link and the deliveries that are queued on the
/// strand.
struct EventSink {
    EventSink(CSTAEventIfc* to, const Service* of) : receiver(to), source(of) {}

    CSTAEventIfc* const receiver;
    const Service* const source;
    /// Cleared before the receiver's removal returns. Every delivery checks it first.
    std::atomic<bool> live{true};
    /// Null for the own line. Used by the reader thread only.
    std::unique_ptr<OtherDeviceEvents> otherDevice;
};

/// Posts events to their receivers on the line's strand. Call from the reader thread only.
class EventDelivery {
public:
    /// Runs a function on the line's strand, later and in order, never inside the call.
    using Post = std::function<void(std::function<void()>)>;
    /// Runs functions on the line's strand as `Post` does, but on the thread that calls `run`.
    struct PostHere {
        std::function<void(std::function<void()>)> queue{};
        std::function<void()> run{};
    };
    /// Called on the strand after the delivery of an event that ends a call, even if its receiver is gone.
    using Ended = std::function<void(const DeliveryContext&)>;

    explicit EventDelivery(Post post, Ended ended = {})
        : m_post(std::move(post)), m_ended(std::move(ended)) {}

    /// Delivers the event with its context. Without a time in it, the event happens now, not when the strand
    /// gets to it.
    void deliver(const std::shared_ptr<EventSink>& sink, std::unique_ptr<CSTAEvent> event,
                 DeliveryContext context = {}) const;

private:
    const Post m_post;
    const Ended m_ended;
};

}  // namespace host
