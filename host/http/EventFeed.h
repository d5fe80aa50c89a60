#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <set>
#include <string>

#include "host/http/EventRing.h"
#include "host/http/EventStream.h"
#include "journalservice/JournalServiceObserverIfc.h"

namespace host {

/// The journal's changes as events for many streams.
///
/// The road of a change: the journal calls the observer, under the notifier's lock; the item is handed to the loop thread and
/// nothing more happens there; the loop thread writes it as JSON into the ring and wakes the streams, each of which goes
/// on as fast as its client reads.
///
/// The journal changes its lists without a word, too: when it empties some of them, and when it loads them again. Whoever may
/// have made it do so calls `resync`, once that is done; the streams get an event that says: read everything anew.
///
/// Lifetime: outlives its streams' begin and the loop; unsubscribed from the journal before it is destroyed.
class EventFeed final : public JournalServiceObserverIfc, private EventStream::Hub {
public:
    /// Runs a function on the loop thread, later and in order. Any thread.
    using Post = std::function<void(std::function<void()>)>;
    /// The same after a pause.
    using PostLater = std::function<void(std::chrono::milliseconds, std::function<void()>)>;

    static constexpr std::size_t kMaxStreams = 64;

    EventFeed(Post post, PostLater postLater, EventRing::Limits limits = {});
    virtual ~EventFeed() = default;
    EventFeed(const EventFeed&) = delete;
    EventFeed& operator=(const EventFeed&) = delete;

    // Any thread.

    /// A stream for one client; null when there are too many.
    [[nodiscard]] std::shared_ptr<StreamBody> open(const std::string& lastEventId);
    [[nodiscard]] std::size_t streamCount() const noexcept { return *m_streamCount; }
    /// The lists may have changed silently. The event comes at once, or a little later if there was one just now.
    void resync();

    // The loop thread.

    void keepAlive();
    /// Ends all streams, and each that begins later at once: behind it the feed holds nothing of the server's. For good.
    void close();

    // JournalServiceObserverIfc
    void missedCallsCountUpdate(int count) override;
    void missedCallsUpdate(MissedCallItem item, std::string entryId, ActionType action) override;
    void dialledCallsUpdate(DialledCallItem item, std::string entryId, ActionType action) override;
    void receivedCallsUpdate(ReceivedCallItem item, std::string entryId, ActionType action) override;
    void forwardedCallsUpdate(ForwardedCallItem item, std::string entryId, ActionType action) override;
    void callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) override;
    void callBacksCountUpdate(int count) override;

private:
    // EventStream::Hub
    bool join(const std::shared_ptr<EventStream>& stream) override;
    void leave(const EventStream& stream) override;
    [[nodiscard]] const EventRing& ring() const override { return m_ring; }

    template <typename Item>
    void announce(const char* event, Item item, std::string entryId, ActionType action);
    void announceCount(const char* event, int count);
    void append(const char* event, const nlohmann::ordered_json& data);
    void resyncIfDue();

    // Constant after construction.
    const Post m_post;
    const PostLater m_postLater;

    /// Shared with the streams' places, which may be dropped after the feed.
    const std::shared_ptr<std::atomic<std::size_t>> m_streamCount =
        std::make_shared<std::atomic<std::size_t>>(0);

    // The loop thread's.
    EventRing m_ring;
    std::set<std::shared_ptr<EventStream>> m_streams;
    bool m_closed = false;
    bool m_resyncDue = false;
    bool m_resyncPauses = false;
};

}  // namespace host
