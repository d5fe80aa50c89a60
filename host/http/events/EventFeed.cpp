#include "host/http/events/EventFeed.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <nlohmann/json.hpp>
#include <sstream>
#include <utility>

#include "host/presentation/ItemJson.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::chrono::milliseconds kBetweenResyncs{200};

// A write costs some 10 us of the processor for each stream. While changes come quickly, several events share
// a write.
constexpr std::chrono::microseconds kWakePauseOfStream{200};
constexpr std::chrono::microseconds kMaxWakePause{20000};

/// A prefix of event ids that differs between two runs of the server.
std::string markOfThisRun() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    std::ostringstream text;
    text << std::hex << std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
    return text.str();
}

}  // namespace

EventFeed::EventFeed(Post post, PostLater postLater, RunAside runAside, EventRing::Limits limits,
                     Stored stored)
    : m_post(std::move(post)),
      m_postLater(std::move(postLater)),
      m_runAside(std::move(runAside)),
      m_stored(std::move(stored)),
      m_ring(markOfThisRun(), limits) {}

std::shared_ptr<StreamBody> EventFeed::open(const std::string& lastEventId, std::function<bool()> mayGoOn,
                                            std::shared_ptr<void> owner) {
    if (m_streamsOpen->count.fetch_add(1) >= kMaxStreams) {
        --m_streamsOpen->count;
        return nullptr;
    }
    // Destroyed with the stream, on any thread.
    std::shared_ptr<void> slot(nullptr, [streams = m_streamsOpen, owner = std::move(owner)](void* /*none*/) {
        streams->lastEnd = Clock::now();
        --streams->count;
    });
    return std::make_shared<EventStream>(static_cast<EventStream::StreamRegistry&>(*this), lastEventId,
                                         std::move(slot), std::move(mayGoOn));
}

void EventFeed::resync() {
    enqueue([] { return Change{}; });
}

void EventFeed::liveCallsChanged() {
    {
        const std::lock_guard lock(m_mutex);
        if (!mayBeRead()) {
            m_hasGap = true;
            return;
        }
        if (std::exchange(m_liveCallsDue, true)) {
            return;
        }
    }
    m_post([this] {
        const Clock::time_point now = Clock::now();
        const bool isSoon =
            m_lastLiveCalls != Clock::time_point::min() && now - m_lastLiveCalls < kBetweenLiveCalls;
        if (isSoon) {
            m_postLater(kBetweenLiveCalls, [this] { enqueueLiveCalls(); });
        } else {
            enqueueLiveCalls();
        }
    });
}

void EventFeed::enqueueLiveCalls() {
    m_lastLiveCalls = Clock::now();
    {
        const std::lock_guard lock(m_mutex);
        m_liveCallsDue = false;
    }
    enqueue([] { return Change{.kind = Change::Kind::eLiveCalls, .event = "liveCallsUpdate"}; });
}

void EventFeed::keepAlive() {
    for (const auto& stream : std::set<std::shared_ptr<EventStream>>(m_streams)) {
        stream->keepAlive();
    }
}

bool EventFeed::endRefused() {
    bool isAnyLeft = false;
    for (const auto& stream : std::set<std::shared_ptr<EventStream>>(m_streams)) {
        if (stream->mayGoOn()) {
            isAnyLeft = isAnyLeft || stream->isLimited();
        } else {
            stream->disconnected();
        }
    }
    return isAnyLeft;
}

void EventFeed::close() {
    m_closed = true;
    for (const auto& stream : std::exchange(m_streams, {})) {
        stream->end();
    }
}

bool EventFeed::add(const std::shared_ptr<EventStream>& stream) {
    if (m_closed) {
        return false;
    }
    // The stream is counted, so from here on each change is queued.
    const std::lock_guard lock(m_mutex);
    if (std::exchange(m_hasGap, false)) {
        m_ring.forget();
    }
    m_streams.insert(stream);
    return true;
}

void EventFeed::remove(const EventStream& stream) {
    const auto found = std::find_if(m_streams.begin(), m_streams.end(),
                                    [&stream](const auto& each) { return each.get() == &stream; });
    if (found != m_streams.end()) {
        m_streams.erase(found);
    }
}

void EventFeed::missedCallsCountUpdate(int count) {
    enqueue([count] {
        return Change{.kind = Change::Kind::eMissedCount, .event = "missedCallsCountUpdate", .number = count};
    });
}

void EventFeed::missedCallsUpdate(MissedCallItem item, std::string entryId, ActionType action) {
    announce("missedCallsUpdate", std::move(item), std::move(entryId), action);
}

void EventFeed::dialledCallsUpdate(DialledCallItem item, std::string entryId, ActionType action) {
    announce("dialledCallsUpdate", std::move(item), std::move(entryId), action);
}

void EventFeed::receivedCallsUpdate(ReceivedCallItem item, std::string entryId, ActionType action) {
    announce("receivedCallsUpdate", std::move(item), std::move(entryId), action);
}

void EventFeed::forwardedCallsUpdate(ForwardedCallItem item, std::string entryId, ActionType action) {
    announce("forwardedCallsUpdate", std::move(item), std::move(entryId), action);
}

void EventFeed::callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) {
    announce("callBacksUpdate", std::move(item), std::move(entryId), action);
}

void EventFeed::callBacksCountUpdate(int count) {
    enqueue([count] {
        return Change{.kind = Change::Kind::eCallBackCount, .event = "callBacksCountUpdate", .number = count};
    });
}

template <typename Item>
void EventFeed::announce(const char* event, Item item, std::string entryId, ActionType action) {
    enqueue([&] {
        Change change{.kind = Change::Kind::eItem,
                      .event = event,
                      .entryId = std::move(entryId),
                      .number = static_cast<int>(action)};
        if (item.getEntryId().empty()) {
            return change;
        }
        if constexpr (!std::is_same_v<Item, CallBackItem>) {
            if (!item.getUniqueId().empty()) {
                change.key.emplace(ListTraits<Item>::kList, item.getUniqueId());
            }
        }
        change.notified = [item = std::move(item)] { return itemJson(item); };
        return change;
    });
}

bool EventFeed::mayBeRead() const noexcept {
    if (m_streamsOpen->count != 0) {
        return true;
    }
    const Clock::time_point lastEnd = m_streamsOpen->lastEnd;
    return lastEnd != Clock::time_point::min() && Clock::now() - lastEnd < kReturnTime;
}

void EventFeed::enqueue(const std::function<Change()>& change) {
    {
        const std::lock_guard lock(m_mutex);
        if (!mayBeRead()) {
            m_hasGap = true;
            return;
        }
        if (m_queue.size() < kMaxQueued) {
            m_queue.push_back(change());
        } else {
            m_queue.clear();
            m_queue.emplace_back();
        }
        if (std::exchange(m_publishing, true)) {
            return;
        }
    }
    guarded([this] { m_runAside([this] { publishQueued(); }); });
}

void EventFeed::guarded(const std::function<void()>& step) {
    try {
        step();
    } catch (const std::exception& error) {
        logAppUni("HTTP", __FILE_NAME__, 2, __LINE__, "events cannot be published: %s", error.what());
        const std::lock_guard lock(m_mutex);
        m_publishing = false;
        m_hasLost = true;
    }
}

void EventFeed::publishQueued() {
    guarded([this] {
        std::deque<Change> changes;
        {
            const std::lock_guard lock(m_mutex);
            changes.swap(m_queue);
            if (std::exchange(m_hasLost, false)) {
                changes.emplace_back();
            }
        }
        // The next batch waits until the loop has this one, so that a busy loop gets few and large ones.
        m_post([this, events = eventsOf(changes)] {
            guarded([&] { append(events); });
            publishNext();
        });
    });
}

void EventFeed::publishNext() {
    {
        const std::lock_guard lock(m_mutex);
        m_publishing = !m_queue.empty();
        if (!m_publishing) {
            return;
        }
    }
    guarded([this] { m_runAside([this] { publishQueued(); }); });
}

std::vector<EventFeed::Event> EventFeed::eventsOf(const std::deque<Change>& changes) const {
    using Kind = Change::Kind;
    const bool counts = std::any_of(changes.begin(), changes.end(),
                                    [](const Change& each) { return each.kind == Kind::eMissedCount; });
    const auto unviewed = counts && m_stored.unviewed ? m_stored.unviewed() : std::nullopt;
    std::vector<Json> entries = storedEntries(changes);
    auto stored = entries.begin();
    std::vector<Event> events;
    events.reserve(changes.size());
    for (const Change& change : changes) {
        Json data;
        if (change.kind == Kind::eItem) {
            Json item = change.key && !entries.empty() ? std::move(*stored++) : Json();
            if (item.is_null() && change.notified) {
                item = change.notified();
                if (m_stored.numberText) {
                    item["numberText"] = m_stored.numberText(item["number"].get<std::string>());
                }
            }
            data = {{"action", change.number}, {"entryId", change.entryId}, {"item", std::move(item)}};
        } else if (change.kind == Kind::eLiveCalls) {
            data = m_stored.liveCalls ? m_stored.liveCalls() : Json();
        } else if (change.kind != Kind::eResync) {
            const bool isStored = change.kind == Kind::eMissedCount && unviewed;
            data = {{"count", isStored ? static_cast<int>(*unviewed) : change.number}};
        }
        events.push_back({change.event, data.is_null() ? std::string() : jsonText(data)});
    }
    return events;
}

std::vector<Json> EventFeed::storedEntries(const std::deque<Change>& changes) const {
    std::vector<EntryKey> keys;
    for (const Change& change : changes) {
        if (change.key) {
            keys.push_back(*change.key);
        }
    }
    return keys.empty() || !m_stored.entries ? std::vector<Json>() : m_stored.entries(keys);
}

void EventFeed::append(const std::vector<Event>& events) {
    for (const Event& event : events) {
        if (!event.text.empty()) {
            m_ring.append(event.name, event.text);
            continue;
        }
        m_resyncDue = true;
        if (!m_resyncDelayActive) {
            appendResyncIfDue();
        }
    }
    wakeStreamsSoon();
}

void EventFeed::wakeStreamsSoon() {
    if (std::exchange(m_wakeIsDue, true) || m_wakeDelayActive) {
        return;
    }
    wakeStreams();
    const auto pause = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::min(kMaxWakePause, kWakePauseOfStream * static_cast<int>(m_streams.size())));
    if (pause.count() > 0) {
        m_postLater(pause, [this] {
            m_wakeDelayActive = false;
            if (std::exchange(m_wakeIsDue, false)) {
                wakeStreamsSoon();
            }
        });
        m_wakeDelayActive = true;
    }
}

void EventFeed::appendResyncIfDue() {
    m_resyncDelayActive = false;
    if (std::exchange(m_resyncDue, false)) {
        m_ring.append("resync", "{}");
        m_postLater(kBetweenResyncs, [this] {
            appendResyncIfDue();
            wakeStreams();
        });
        m_resyncDelayActive = true;
    }
}

void EventFeed::wakeStreams() {
    m_wakeIsDue = false;
    for (const auto& stream : std::set<std::shared_ptr<EventStream>>(m_streams)) {
        stream->wake();
    }
}

}  // namespace host
