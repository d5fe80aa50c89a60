#pragma once

#include <functional>
#include <memory>
#include <string>

namespace host {

/// Sink for a streaming (chunked) response body. Call from the server's loop thread only.
class StreamSink {
public:
    /// True if the text was sent to the network; false if the client disconnected. Called once, on the loop
    /// thread.
    using Done = std::function<void(bool)>;

    StreamSink() = default;
    StreamSink(const StreamSink&) = delete;
    StreamSink& operator=(const StreamSink&) = delete;
    /// Ends the response.
    virtual ~StreamSink() = default;

    /// Requires: `done` of the previous write was called. The server closes the connection of a client that
    /// does not read.
    virtual void write(std::string text, Done done) = 0;
};

/// The source of a streaming response body.
class StreamBody {
public:
    StreamBody() = default;
    StreamBody(const StreamBody&) = delete;
    StreamBody& operator=(const StreamBody&) = delete;
    virtual ~StreamBody() = default;

    /// Called once, on the loop thread, after the headers were sent.
    virtual void begin(std::unique_ptr<StreamSink> sink) = 0;
    /// Called on the loop thread, at most once, when the client has disconnected. A write may have reported
    /// it before.
    virtual void disconnected() = 0;
};

}  // namespace host
