#include "host/http/events/EventFeed.h"

#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>
#include <sstream>
#include <utility>

#include "host/presentation/ItemJson.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::chrono::milliseconds kBetweenResyncs{200};

/// A prefix of event ids that differs between two runs of the server.
std::string markOfThisRun() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    std::ostringstream text;
    text << std::hex << std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
    return text.str();
}

}  // namespace

EventFeed::EventFeed(Post post, PostLater postLater, EventRing::Limits limits, Stored stored)
    : m_post(std::move(post)),
      m_postLater(std::move(postLater)),
      m_stored(std::move(stored)),
      m_ring(markOfThisRun(), limits) {}

std::shared_ptr<StreamBody> EventFeed::open(const std::string& lastEventId) {
    if (m_streamCount->fetch_add(1) >= kMaxStreams) {
        --*m_streamCount;
        return nullptr;
    }
    // Decrements the count when the stream is destroyed, on any thread.
    std::shared_ptr<void> slot(nullptr, [count = m_streamCount](void* /*none*/) { --*count; });
    return std::make_shared<EventStream>(static_cast<EventStream::StreamRegistry&>(*this), lastEventId,
                                         std::move(slot));
}

void EventFeed::resync() {
    m_post([this] {
        m_resyncDue = true;
        if (!m_resyncDelayActive) {
            resyncIfDue();
        }
    });
}

void EventFeed::resyncIfDue() {
    m_resyncDelayActive = std::exchange(m_resyncDue, false);
    if (m_resyncDelayActive) {
        append("resync", Json::object());
        m_postLater(kBetweenResyncs, [this] { resyncIfDue(); });
    }
}

void EventFeed::keepAlive() {
    for (const auto& stream : std::set<std::shared_ptr<EventStream>>(m_streams)) {
        stream->keepAlive();
    }
}

void EventFeed::close() {
    m_closed = true;
    for (const auto& stream : std::exchange(m_streams, {})) {
        stream->end();
    }
}

bool EventFeed::add(const std::shared_ptr<EventStream>& stream) {
    if (!m_closed) {
        m_streams.insert(stream);
    }
    return !m_closed;
}

void EventFeed::remove(const EventStream& stream) {
    const auto found = std::find_if(m_streams.begin(), m_streams.end(),
                                    [&stream](const auto& each) { return each.get() == &stream; });
    if (found != m_streams.end()) {
        m_streams.erase(found);
    }
}

void EventFeed::missedCallsCountUpdate(int count) {
    const auto stored = m_stored.unviewed ? m_stored.unviewed() : std::nullopt;
    announceCount("missedCallsCountUpdate", stored ? static_cast<int>(*stored) : count);
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
    announceCount("callBacksCountUpdate", count);
}

template <typename Item>
Json EventFeed::storedJson(const Item& item) const {
    if (item.getEntryId().empty()) {
        return nullptr;
    }
    if constexpr (!std::is_same_v<Item, CallBackItem>) {
        Json stored = m_stored.entry && !item.getUniqueId().empty()
                          ? m_stored.entry(ListTraits<Item>::kList, item.getUniqueId())
                          : Json();
        if (!stored.is_null()) {
            return stored;
        }
    }
    return itemJson(item);
}

template <typename Item>
void EventFeed::announce(const char* event, Item item, std::string entryId, ActionType action) {
    m_post([this, event, entry = storedJson(item), entryId = std::move(entryId), action]() mutable {
        append(event,
               {{"action", static_cast<int>(action)}, {"entryId", entryId}, {"item", std::move(entry)}});
    });
}

void EventFeed::announceCount(const char* event, int count) {
    m_post([this, event, count] { append(event, {{"count", count}}); });
}

void EventFeed::append(const char* event, const Json& data) {
    m_ring.append(event, jsonText(data));
    for (const auto& stream : std::set<std::shared_ptr<EventStream>>(m_streams)) {
        stream->wake();
    }
}

}  // namespace host
