#pragma once

#include <atomic>
#include <functional>
#include <memory>

class CSTAEvent;
class CSTAEventIfc;
class Service;

namespace host {

/// Where events go, and whether they still may. Shared by the link and the deliveries that wait on the strand.
struct EventSink {
    EventSink(CSTAEventIfc* to, const Service* of) : receiver(to), source(of) {}

    CSTAEventIfc* const receiver;
    const Service* const source;
    /// Cleared before the receiver's leave returns; a delivery looks at it first.
    std::atomic<bool> live{true};
};

/// Brings events to their receivers on the line's strand. Used by the reader thread.
class EventDelivery {
public:
    using Post = std::function<void(std::function<void()>)>;

    explicit EventDelivery(Post post) : m_post(std::move(post)) {}

    void deliver(const std::shared_ptr<EventSink>& sink, std::unique_ptr<CSTAEvent> event) const;

private:
    const Post m_post;
};

}  // namespace host
