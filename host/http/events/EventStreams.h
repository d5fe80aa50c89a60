#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>

#include "host/http/events/EventRing.h"
#include "host/http/events/EventStream.h"

namespace host {

/// The open event streams of one feed, with the ring of its last events.
///
/// Lifetime: outlives the server's loop.
class EventStreams final : private EventStream::StreamRegistry {
public:
    /// Runs a function on the loop thread after a delay. Thread-safe.
    using PostLater = std::function<void(std::chrono::milliseconds, std::function<void()>)>;

    static constexpr std::size_t kMaxStreams = 128;
    /// The time for which events are stored after the last stream has ended, for a client that reconnects.
    static constexpr std::chrono::seconds kReturnTime{60};

    /// `takeGap` returns true once after events that are not in the ring; the loop thread calls it when a
    /// stream begins. May be empty.
    EventStreams(PostLater postLater, EventRing::Limits limits, std::function<bool()> takeGap = {});
    ~EventStreams() = default;
    EventStreams(const EventStreams&) = delete;
    EventStreams& operator=(const EventStreams&) = delete;

    // Thread-safe.

    /// A stream for one client; nullptr if there are already `kMaxStreams`. The stream ends when `endRefused`
    /// is called while `mayGoOn`, if it is not empty, returns false. It keeps `owner` until then.
    [[nodiscard]] std::shared_ptr<StreamBody> open(const std::string& lastEventId,
                                                   std::function<bool()> mayGoOn,
                                                   std::shared_ptr<void> owner);
    [[nodiscard]] std::size_t count() const noexcept { return m_open->count; }
    /// True while a stream is open, and for `kReturnTime` afterwards.
    [[nodiscard]] bool mayBeRead() const noexcept;

    // Call from the loop thread only.

    /// Appends an event to the ring.
    void append(const char* name, const std::string& text) { m_ring.append(name, text); }
    /// Makes the streams write now, or after a pause that grows with their number.
    void wakeSoon();
    void wake();
    /// Sends a comment to each stream.
    void keepAlive();
    /// Ends the streams that may not go on. Returns true if streams are left whose right may end.
    bool endRefused();
    /// Ends all streams, and every later stream as soon as it begins. Afterwards no object of the server is
    /// held.
    void close();

private:
    using Clock = std::chrono::steady_clock;

    /// The open streams. Shared with the streams' slots, which may be destroyed after the feed.
    struct Open {
        std::atomic<std::size_t> count{0};
        /// Set when a stream ends, before it is counted as ended.
        std::atomic<Clock::time_point> lastEnd{Clock::time_point::min()};
    };

    // EventStream::StreamRegistry
    bool add(const std::shared_ptr<EventStream>& stream) override;
    void remove(const EventStream& stream) override;
    [[nodiscard]] const EventRing& ring() const override { return m_ring; }

    // Constant after construction.
    const PostLater m_postLater;
    const std::function<bool()> m_takeGap;

    const std::shared_ptr<Open> m_open = std::make_shared<Open>();

    // Loop thread only.
    EventRing m_ring;
    std::set<std::shared_ptr<EventStream>> m_streams;
    bool m_closed = false;
    bool m_wakeIsDue = false;
    bool m_wakeDelayActive = false;
};

}  // namespace host
