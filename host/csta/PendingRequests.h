#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "host/csta-wire/InvokeIds.h"

namespace host {

class WireDocument;

/// How a request to the switch ended.
struct Answer {
    enum class Kind {
        eAnswered,  ///< `document` is the answer
        eRefused,   ///< `category` and `value` say why
        eTimedOut,
        eLost,  ///< the connection is gone, or was never there
    };

    Kind kind = Kind::eLost;
    /// Borrowed for the length of the handler.
    const WireDocument* document = nullptr;
    std::string category;
    std::string value;

    [[nodiscard]] bool isOfKind(const char* rootName) const;
};

/// The requests that wait for an answer of the switch. Each handler is called exactly once. Belongs to the reader thread;
/// a handler may make new requests.
class PendingRequests {
public:
    using Handler = std::function<void(const Answer&)>;

    PendingRequests(asio::io_context& io, std::chrono::milliseconds limit);

    /// The invoke id to send the request with; nothing when all are taken (the handler is then not called).
    [[nodiscard]] std::optional<int> add(Handler handler);
    /// False when no request waits under that id: the answer is late, or was never asked for.
    bool complete(int invokeId, const WireDocument& document);
    void failAll();

private:
    struct Waiting {
        // Tells this request from a later one under the same id.
        unsigned long serial = 0;
        Handler handler;
        std::unique_ptr<asio::steady_timer> timer;
    };

    void finish(int invokeId, const Answer& answer);

    asio::io_context& m_io;
    const std::chrono::milliseconds m_limit;
    InvokeIds m_ids;
    unsigned long m_lastSerial = 0;
    std::map<int, Waiting> m_waiting;
};

}  // namespace host
