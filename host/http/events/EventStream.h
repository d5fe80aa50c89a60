#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "host/http/events/EventRing.h"
#include "host/http/messages/Streaming.h"

namespace host {

/// The event stream of one client. It stores only a position in the ring, so a slow client delays no other
/// client and uses no memory. A client whose position is no longer in the ring gets a "resync" event.
///
/// Call from the loop thread only; construction and destruction on any thread.
class EventStream final : public StreamBody, public std::enable_shared_from_this<EventStream> {
public:
    /// The owner of the ring and the list of streams. Call from the loop thread only.
    class StreamRegistry {
    public:
        StreamRegistry() = default;
        StreamRegistry(const StreamRegistry&) = delete;
        StreamRegistry& operator=(const StreamRegistry&) = delete;
        /// Adds `stream` for `wake` until `remove`. Returns false if the registry is closed.
        [[nodiscard]] virtual bool add(const std::shared_ptr<EventStream>& stream) = 0;
        virtual void remove(const EventStream& stream) = 0;
        [[nodiscard]] virtual const EventRing& ring() const = 0;

    protected:
        ~StreamRegistry() = default;
    };

    /// `lastEventId`: the id of the last event that the client got; empty for a new client. `slot` lives as
    /// long as the stream. `mayGoOn`: false when the client may no longer read; empty if that cannot happen.
    EventStream(StreamRegistry& registry, std::string lastEventId, std::shared_ptr<void> slot,
                std::function<bool()> mayGoOn = {})
        : m_registry(registry),
          m_lastEventId(std::move(lastEventId)),
          m_slot(std::move(slot)),
          m_mayGoOn(std::move(mayGoOn)) {}

    void begin(std::unique_ptr<StreamSink> sink) override;
    void disconnected() override;

    /// Writes the new events of the ring, unless a write is pending.
    void wake();
    /// Writes a comment, which keeps the connection open and detects a disconnected client.
    void keepAlive();
    /// True if the right of the client to read may end.
    [[nodiscard]] bool isLimited() const noexcept { return m_mayGoOn != nullptr; }
    [[nodiscard]] bool mayGoOn() const { return !m_mayGoOn || m_mayGoOn(); }
    /// Ends the stream.
    void end();

private:
    void write(std::string text);
    [[nodiscard]] std::string resync();

    EventStream::StreamRegistry& m_registry;
    const std::string m_lastEventId;
    const std::shared_ptr<void> m_slot;
    const std::function<bool()> m_mayGoOn;

    // Loop thread only.
    std::shared_ptr<StreamSink> m_sink;
    std::uint64_t m_position = 0;
    bool m_writing = false;
};

}  // namespace host
