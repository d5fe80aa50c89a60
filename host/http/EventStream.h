#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "host/http/EventRing.h"
#include "host/http/Streaming.h"

namespace host {

/// The event stream of one client. It keeps nothing of its own but a position in the ring: a client that reads slowly holds
/// up nobody and costs no memory, and one that falls behind what the ring keeps is told to read everything anew.
///
/// Threads: the loop thread; made and dropped on any.
class EventStream final : public StreamBody, public std::enable_shared_from_this<EventStream> {
public:
    /// The other end of the streams.
    class Hub {
    public:
        Hub() = default;
        Hub(const Hub&) = delete;
        Hub& operator=(const Hub&) = delete;
        /// `stream` wants to be told of news from now on, until it is gone. False when there will be none. Loop thread.
        [[nodiscard]] virtual bool join(const std::shared_ptr<EventStream>& stream) = 0;
        virtual void leave(const EventStream& stream) = 0;
        [[nodiscard]] virtual const EventRing& ring() const = 0;

    protected:
        ~Hub() = default;
    };

    /// `lastEventId` is what the client saw last; empty when it is new here. `slot` is kept as long as the stream lives.
    EventStream(Hub& hub, std::string lastEventId, std::shared_ptr<void> slot)
        : m_hub(hub), m_lastEventId(std::move(lastEventId)), m_slot(std::move(slot)) {}

    void begin(std::unique_ptr<StreamSink> sink) override;

    /// The ring has news.
    void wake();
    /// A comment line for a client that has heard nothing for a while, which also shows whether it is still there.
    void keepAlive();
    /// Ends the stream.
    void end();

private:
    void write(std::string text);
    [[nodiscard]] std::string resync();

    EventStream::Hub& m_hub;
    const std::string m_lastEventId;
    const std::shared_ptr<void> m_slot;

    // The loop thread's.
    std::unique_ptr<StreamSink> m_sink;
    std::uint64_t m_position = 0;
    bool m_writing = false;
};

}  // namespace host
