#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "host/http/events/EventStreams.h"

namespace host {

/// The event stream of all lines: the events of each line's feed, with the line as the first member of their
/// data. The lines publish to it only while it may be read.
///
/// Lifetime: outlives the server's loop and the feeds of the lines.
class AllLinesFeed {
public:
    explicit AllLinesFeed(EventStreams::PostLater postLater);
    AllLinesFeed(const AllLinesFeed&) = delete;
    AllLinesFeed& operator=(const AllLinesFeed&) = delete;

    // Thread-safe.

    /// See `EventStreams::open`. Call it before the lines' feeds are asked for what they miss.
    [[nodiscard]] std::shared_ptr<StreamBody> open(const std::string& lastEventId,
                                                   std::function<bool()> mayGoOn);
    [[nodiscard]] bool mayBeRead() const noexcept { return m_streams.mayBeRead(); }
    [[nodiscard]] std::size_t streamCount() const noexcept { return m_streams.count(); }

    // Call from the loop thread only.

    /// `data` is a JSON object. An event that no stream can read is not kept.
    void append(const std::string& line, const char* event, const std::string& data);
    void keepAlive() { m_streams.keepAlive(); }
    [[nodiscard]] bool endRefused() { return m_streams.endRefused(); }
    void close() { m_streams.close(); }

private:
    std::atomic<bool> m_hasGap{false};
    EventStreams m_streams;
};

}  // namespace host
