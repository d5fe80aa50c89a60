#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/http/events/EventRing.h"
#include "host/http/events/EventStreams.h"
#include "journal-items/ListTraits.h"
#include "journalservice/JournalServiceObserverIfc.h"

namespace host {

/// Publishes the journal's changes to all event streams. The sequence of a change:
///
///  1. The journal calls the observer with the notifier's lock held, when the change is stored. The observer
///     adds it to a queue, if a stream is open or has ended within the last `kReturnTime`; otherwise it only
///     notes that a change was not published.
///  2. Another thread takes what is queued, reads the entries and the count of unviewed ones as they are
///     stored, which may be more than the journal has loaded, and posts the events to the loop thread.
///  3. The loop thread appends the events to the ring, if only another reader has asked for them to that one,
///     and wakes the streams.
///  4. Each stream writes as fast as its client reads.
///
/// If step 2 is late by more than `kMaxQueued` changes, one resync takes their place. A stream that
/// resumes after a change that was not published begins with a resync, too.
///
/// The journal does not notify observers of some changes: clearing some of the lists, and reloading. A
/// component that may have caused such a change calls `resync` afterwards; each stream gets a "resync" event,
/// and its client reads all again.
///
/// Lifetime: outlives the server's loop and the work that it has passed to `RunAside`, and is unsubscribed
/// from the journal before it is destroyed.
class EventFeed final : public JournalServiceObserverIfc {
public:
    /// Runs a function on the loop thread, asynchronously and in order. Thread-safe.
    using Post = std::function<void(std::function<void()>)>;
    /// The same after a delay.
    using PostLater = EventStreams::PostLater;

    /// Runs a function on a thread that may wait for the database, asynchronously. Thread-safe.
    using RunAside = std::function<void(std::function<void()>)>;

    /// An entry by its list and unique id.
    using EntryKey = std::pair<ListName, std::string>;

    /// The entries as they are stored; `RunAside`'s thread calls these functions. Each may be empty.
    struct Stored {
        /// The entries as JSON, in the order of the keys; null for one that is not stored.
        std::function<std::vector<nlohmann::ordered_json>(const std::vector<EntryKey>&)> entries{};
        /// The number of unviewed missed entries; std::nullopt if the database fails.
        std::function<std::optional<std::size_t>()> unviewed{};
        /// The live calls of the line.
        std::function<nlohmann::ordered_json()> liveCalls{};
        /// A number as people write it.
        std::function<std::string(const std::string&)> numberText{};
    };

    /// Another reader of the events of this feed, as the stream of all lines. Each may be empty.
    struct Reader {
        /// True while it may be read; thread-safe.
        std::function<bool()> mayBeRead;
        /// Gets the name of each event and its data, a JSON object, on the loop thread.
        std::function<void(const char*, const std::string&)> event;
    };

    static constexpr std::size_t kMaxStreams = EventStreams::kMaxStreams;
    static constexpr std::size_t kMaxQueued = 1024;
    static constexpr std::chrono::milliseconds kBetweenLiveCalls{100};
    /// The time for which events are stored after the last stream has ended, for a client that reconnects.
    static constexpr std::chrono::seconds kReturnTime = EventStreams::kReturnTime;

    EventFeed(Post post, PostLater postLater, RunAside runAside, EventRing::Limits limits, Stored stored,
              Reader reader = {});
    virtual ~EventFeed() = default;
    EventFeed(const EventFeed&) = delete;
    EventFeed& operator=(const EventFeed&) = delete;

    // Thread-safe.

    /// A stream for one client; nullptr if there are already `kMaxStreams`.
    /// The stream ends when `endRefused` is called while `mayGoOn`, if it is not empty, returns false. It
    /// keeps `owner` until then, which may own the feed.
    [[nodiscard]] std::shared_ptr<StreamBody> open(const std::string& lastEventId,
                                                   std::function<bool()> mayGoOn = {},
                                                   std::shared_ptr<void> owner = {});
    [[nodiscard]] std::size_t streamCount() const noexcept { return m_streams.count(); }
    /// Reports that the lists may have changed without a notification. Sends the event after those of the
    /// changes that were notified before, and no sooner than 200 ms after the previous one.
    void resync();
    /// Reports that the live calls have changed. The event has the calls as they are when it is published, no
    /// sooner than `kBetweenLiveCalls` after the previous one.
    void liveCallsChanged();

    // Call from the loop thread only.

    /// Sends a comment to each stream.
    void keepAlive() { m_streams.keepAlive(); }
    /// Ends the streams that may not go on. Returns true if streams are left whose right may end.
    bool endRefused() { return m_streams.endRefused(); }
    /// Ends all streams, and every later stream as soon as it begins. Afterwards the feed holds no object of
    /// the server.
    void close() { m_streams.close(); }

    // JournalServiceObserverIfc
    void missedCallsCountUpdate(int count) override;
    void missedCallsUpdate(MissedCallItem item, std::string entryId, ActionType action) override;
    void dialledCallsUpdate(DialledCallItem item, std::string entryId, ActionType action) override;
    void receivedCallsUpdate(ReceivedCallItem item, std::string entryId, ActionType action) override;
    void forwardedCallsUpdate(ForwardedCallItem item, std::string entryId, ActionType action) override;
    void callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) override;
    void callBacksCountUpdate(int count) override;

private:
    using Clock = std::chrono::steady_clock;

    /// A queued change.
    struct Change {
        enum class Kind { eItem, eMissedCount, eCallBackCount, eLiveCalls, eResync };
        Kind kind = Kind::eResync;
        const char* event = "resync";
        /// Of an item: its key, if it is one of the journal's call entries, and a function that returns the
        /// item as it was notified.
        std::optional<EntryKey> key{};
        std::function<nlohmann::ordered_json()> notified{};
        std::string entryId{};
        /// The action of an item, or a count.
        int number = 0;
    };

    /// An event for the ring; without a text, a resync.
    struct Event {
        const char* name;
        std::string text;
    };

    // Any thread.
    template <typename Item>
    void announce(const char* event, Item item, std::string entryId, ActionType action);
    void enqueue(const std::function<Change()>& change);
    [[nodiscard]] bool mayBeRead() const noexcept;
    /// Runs one step of the publication. If it throws, as without free memory, what it had is replaced by a
    /// resync, which is published with the next change.
    void guarded(const std::function<void()>& step);

    // `RunAside`'s thread only.
    void publishQueued();
    [[nodiscard]] std::vector<Event> eventsOf(const std::deque<Change>& changes) const;
    [[nodiscard]] std::vector<nlohmann::ordered_json> storedEntries(const std::deque<Change>& changes) const;

    // Loop thread only.
    void publishNext();
    void append(const std::vector<Event>& events);
    void append(const char* name, const std::string& text);
    void appendResyncIfDue();
    void enqueueLiveCalls();

    // Constant after construction.
    const Post m_post;
    const PostLater m_postLater;
    const RunAside m_runAside;
    const Stored m_stored;
    const Reader m_reader;

    std::mutex m_mutex;
    // Guarded by m_mutex.
    std::deque<Change> m_queue;
    /// A batch of changes is between the queue and the ring.
    bool m_publishing = false;
    /// A batch was lost.
    bool m_hasLost = false;
    /// A change of the live calls is not queued yet.
    bool m_liveCallsDue = false;
    /// A change was not published, because no stream could have read it.
    bool m_hasGap = false;

    // Loop thread only.
    EventStreams m_streams;
    Clock::time_point m_lastLiveCalls = Clock::time_point::min();
    bool m_resyncDue = false;
    bool m_resyncDelayActive = false;
};

}  // namespace host
