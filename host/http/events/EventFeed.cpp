#include "host/http/events/EventFeed.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <nlohmann/json.hpp>
#include <utility>

#include "host/presentation/ItemJson.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::chrono::milliseconds kBetweenResyncs{200};

}  // namespace

EventFeed::EventFeed(Post post, PostLater postLater, RunAside runAside, EventRing::Limits limits,
                     Stored stored, Reader reader)
    : m_post(std::move(post)),
      m_postLater(std::move(postLater)),
      m_runAside(std::move(runAside)),
      m_stored(std::move(stored)),
      m_reader(std::move(reader)),
      m_streams(m_postLater, limits, [this] {
          // The stream is counted, so from here on each change is queued.
          const std::lock_guard lock(m_mutex);
          return std::exchange(m_hasGap, false);
      }) {}

std::shared_ptr<StreamBody> EventFeed::open(const std::string& lastEventId, std::function<bool()> mayGoOn,
                                            std::shared_ptr<void> owner) {
    return m_streams.open(lastEventId, std::move(mayGoOn), std::move(owner));
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
    return m_streams.mayBeRead() || (m_reader.mayBeRead && m_reader.mayBeRead());
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
            append(event.name, event.text);
            continue;
        }
        m_resyncDue = true;
        if (!m_resyncDelayActive) {
            appendResyncIfDue();
        }
    }
    m_streams.wakeSoon();
}

void EventFeed::append(const char* name, const std::string& text) {
    if (m_streams.mayBeRead()) {
        m_streams.append(name, text);
    } else {
        const std::lock_guard lock(m_mutex);
        m_hasGap = true;
    }
    if (m_reader.event) {
        m_reader.event(name, text);
    }
}

void EventFeed::appendResyncIfDue() {
    m_resyncDelayActive = false;
    if (std::exchange(m_resyncDue, false)) {
        append("resync", "{}");
        m_postLater(kBetweenResyncs, [this] {
            appendResyncIfDue();
            m_streams.wake();
        });
        m_resyncDelayActive = true;
    }
}

}  // namespace host
