#include "host/http/events/EventStreams.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace host {
namespace {

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

EventStreams::EventStreams(PostLater postLater, EventRing::Limits limits, std::function<bool()> takeGap)
    : m_postLater(std::move(postLater)), m_takeGap(std::move(takeGap)), m_ring(markOfThisRun(), limits) {}

std::shared_ptr<StreamBody> EventStreams::open(const std::string& lastEventId, std::function<bool()> mayGoOn,
                                               std::shared_ptr<void> owner) {
    if (m_open->count.fetch_add(1) >= kMaxStreams) {
        --m_open->count;
        return nullptr;
    }
    // Destroyed with the stream, on any thread.
    std::shared_ptr<void> slot(nullptr, [streams = m_open, owner = std::move(owner)](void* /*none*/) {
        streams->lastEnd = Clock::now();
        --streams->count;
    });
    return std::make_shared<EventStream>(static_cast<EventStream::StreamRegistry&>(*this), lastEventId,
                                         std::move(slot), std::move(mayGoOn));
}

bool EventStreams::mayBeRead() const noexcept {
    if (m_open->count != 0) {
        return true;
    }
    const Clock::time_point lastEnd = m_open->lastEnd;
    return lastEnd != Clock::time_point::min() && Clock::now() - lastEnd < kReturnTime;
}

void EventStreams::wakeSoon() {
    if (std::exchange(m_wakeIsDue, true) || m_wakeDelayActive) {
        return;
    }
    wake();
    const auto pause = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::min(kMaxWakePause, kWakePauseOfStream * static_cast<int>(m_streams.size())));
    if (pause.count() > 0) {
        m_postLater(pause, [this] {
            m_wakeDelayActive = false;
            if (std::exchange(m_wakeIsDue, false)) {
                wakeSoon();
            }
        });
        m_wakeDelayActive = true;
    }
}

void EventStreams::wake() {
    m_wakeIsDue = false;
    for (const auto& stream : std::set<std::shared_ptr<EventStream>>(m_streams)) {
        stream->wake();
    }
}

void EventStreams::keepAlive() {
    for (const auto& stream : std::set<std::shared_ptr<EventStream>>(m_streams)) {
        stream->keepAlive();
    }
}

bool EventStreams::endRefused() {
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

void EventStreams::close() {
    m_closed = true;
    for (const auto& stream : std::exchange(m_streams, {})) {
        stream->end();
    }
}

bool EventStreams::add(const std::shared_ptr<EventStream>& stream) {
    if (m_closed) {
        return false;
    }
    if (m_takeGap && m_takeGap()) {
        m_ring.forget();
    }
    m_streams.insert(stream);
    return true;
}

void EventStreams::remove(const EventStream& stream) {
    const auto found = std::find_if(m_streams.begin(), m_streams.end(),
                                    [&stream](const auto& each) { return each.get() == &stream; });
    if (found != m_streams.end()) {
        m_streams.erase(found);
    }
}

}  // namespace host
