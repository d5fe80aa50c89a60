#pragma once

#include <chrono>
#include <cstddef>
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

/// The outcome of a request to the switch.
struct SwitchResponse {
    enum class Kind {
        eResponse,  ///< `document` is the response
        eRefused,   ///< `category` and `value` give the reason
        eTimedOut,
        eLost,  ///< the connection was lost, or never existed
    };

    Kind kind = Kind::eLost;
    /// Valid during the handler only.
    const WireDocument* document = nullptr;
    std::string category;
    std::string value;

    /// True for a positive response whose root element has that name.
    [[nodiscard]] bool isNamed(const char* rootName) const;
};

/// The requests that wait for a response of the switch. Each handler is called exactly once and may send new
/// requests. Reader thread only.
class PendingRequests {
public:
    using Handler = std::function<void(const SwitchResponse&)>;

    /// Stands for the line that has sent a request. Is compared only.
    using Owner = const void*;

    /// `freed` is called after the handler of a request that is complete or late.
    PendingRequests(asio::io_context& io, std::chrono::milliseconds timeout,
                    std::function<void()> freed = {});

    /// Returns the invoke id of the request; `std::nullopt` if all are in use. The handler is then not
    /// called.
    [[nodiscard]] std::optional<int> add(Owner owner, Handler handler);
    /// Returns false if no request with that id is waiting.
    bool complete(int invokeId, const WireDocument& document);
    void failAll();
    /// Fails the requests of one owner.
    void failAll(Owner owner);

    [[nodiscard]] std::size_t count() const noexcept { return m_waiting.size(); }
    /// The owner of the last request with that id if its time has run out; otherwise `nullptr`.
    [[nodiscard]] Owner ownerOfLate(int invokeId) const;

private:
    struct Waiting {
        // Distinguishes this request from later ones with the same id.
        unsigned long serial = 0;
        Owner owner = nullptr;
        Handler handler;
        std::unique_ptr<asio::steady_timer> timer;
    };

    void finish(int invokeId, const SwitchResponse& response);

    asio::io_context& m_io;
    const std::chrono::milliseconds m_timeout;
    const std::function<void()> m_freed;
    InvokeIds m_ids;
    unsigned long m_lastSerial = 0;
    std::map<int, Waiting> m_waiting;
    /// The owners of requests whose time has run out, by id, until the id is used again.
    std::map<int, Owner> m_late;
};

}  // namespace host
