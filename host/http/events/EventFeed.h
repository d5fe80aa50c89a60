#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <set>
#include <string>

#include "host/http/events/EventRing.h"
#include "host/http/events/EventStream.h"
#include "journal-items/ListTraits.h"
#include "journalservice/JournalServiceObserverIfc.h"

namespace host {

/// Publishes the journal's changes to all event streams. The sequence of a change:
///
///  1. The journal calls the observer with the notifier's lock held, when the change is stored. The observer
///     reads the entry and the count of unviewed ones as they are stored, which may be more than the journal
///     has loaded, and posts them to the loop thread.
///  2. The loop thread appends the item as JSON to the ring and wakes the streams.
///  3. Each stream writes as fast as its client reads.
///
/// The journal does not notify observers of some changes: clearing some of the lists, and reloading. A
/// component that may have caused such a change calls `resync` afterwards; each stream gets a "resync" event,
/// and its client reads all again.
///
/// Lifetime: outlives the server's loop, and is unsubscribed from the journal before it is destroyed.
class EventFeed final : public JournalServiceObserverIfc, private EventStream::StreamRegistry {
public:
    /// Runs a function on the loop thread, asynchronously and in order. Thread-safe.
    using Post = std::function<void(std::function<void()>)>;
    /// The same after a delay.
    using PostLater = std::function<void(std::chrono::milliseconds, std::function<void()>)>;

    /// The entries as they are stored; any thread calls these functions. Each may be empty.
    struct Stored {
        /// The entry with that unique id as JSON; null if it is not stored.
        std::function<nlohmann::ordered_json(ListName, const std::string& uniqueId)> entry{};
        /// The number of unviewed missed entries; std::nullopt if the database fails.
        std::function<std::optional<std::size_t>()> unviewed{};
    };

    static constexpr std::size_t kMaxStreams = 128;

    EventFeed(Post post, PostLater postLater, EventRing::Limits limits, Stored stored);
    virtual ~EventFeed() = default;
    EventFeed(const EventFeed&) = delete;
    EventFeed& operator=(const EventFeed&) = delete;

    // Thread-safe.

    /// A stream for one client; nullptr if there are already `kMaxStreams`.
    [[nodiscard]] std::shared_ptr<StreamBody> open(const std::string& lastEventId);
    [[nodiscard]] std::size_t streamCount() const noexcept { return *m_streamCount; }
    /// Reports that the lists may have changed without a notification. Sends the event at once, or 200 ms
    /// after the previous one.
    void resync();

    // Call from the loop thread only.

    /// Sends a comment to each stream.
    void keepAlive();
    /// Ends all streams, and every later stream as soon as it begins. Afterwards the feed holds no object of
    /// the server.
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
    // EventStream::StreamRegistry
    bool add(const std::shared_ptr<EventStream>& stream) override;
    void remove(const EventStream& stream) override;
    [[nodiscard]] const EventRing& ring() const override { return m_ring; }

    /// The item as it is stored; null for an event without one.
    template <typename Item>
    [[nodiscard]] nlohmann::ordered_json storedJson(const Item& item) const;
    template <typename Item>
    void announce(const char* event, Item item, std::string entryId, ActionType action);
    void announceCount(const char* event, int count);
    void append(const char* event, const nlohmann::ordered_json& data);
    void resyncIfDue();

    // Constant after construction.
    const Post m_post;
    const PostLater m_postLater;
    const Stored m_stored;

    /// Shared with the streams' slots, which may be destroyed after the feed.
    const std::shared_ptr<std::atomic<std::size_t>> m_streamCount =
        std::make_shared<std::atomic<std::size_t>>(0);

    // Loop thread only.
    EventRing m_ring;
    std::set<std::shared_ptr<EventStream>> m_streams;
    bool m_closed = false;
    bool m_resyncDue = false;
    bool m_resyncDelayActive = false;
};

}  // namespace host
