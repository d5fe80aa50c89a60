#pragma once

#include <functional>
#include <memory>
#include <string>

namespace host {

/// The way of an answer that has no end to its client. All operations belong to the server's loop thread.
class StreamSink {
public:
    /// Whether the text was handed to the network; false when the client is gone. Called once, on the loop thread.
    using Done = std::function<void(bool)>;

    StreamSink() = default;
    StreamSink(const StreamSink&) = delete;
    StreamSink& operator=(const StreamSink&) = delete;
    /// Ends the answer.
    virtual ~StreamSink() = default;

    /// One text at a time: the next one when `done` was called. A client that does not take it is cut off after a while.
    virtual void write(std::string text, Done done) = 0;
};

/// What writes such an answer.
class StreamBody {
public:
    StreamBody() = default;
    StreamBody(const StreamBody&) = delete;
    StreamBody& operator=(const StreamBody&) = delete;
    virtual ~StreamBody() = default;

    /// The headers are on their way. The loop thread; once.
    virtual void begin(std::unique_ptr<StreamSink> sink) = 0;
};

}  // namespace host
