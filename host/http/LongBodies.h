#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <restinio/all.hpp>
#include <string>
#include <utility>

#include "host/http/RestinioMessages.h"

namespace host {

/// The limits of the bodies that the HTTP library reads, of which it has only one for all requests.
///
///  1. A body of usual length passes.
///  2. When a body becomes longer, `mayBeLong` is called with the request without its body: false closes the
///     connection.
///  3. What comes after the greatest length is read and dropped, until the client's time is over: such a
///     request gets a response, and its body has the greatest length.
///
/// Call from the server's loop thread only; one object for each such thread.
class LongBodies {
public:
    struct Limits {
        std::size_t usual = 0;
        std::size_t greatest = 0;
    };
    LongBodies(Limits limits, std::function<bool(HttpRequest)> mayBeLong)
        : m_limits(limits), m_mayBeLong(std::move(mayBeLong)) {
        ofThisThread() = this;
    }
    LongBodies(const LongBodies&) = delete;
    LongBodies& operator=(const LongBodies&) = delete;

    /// The object of the server that runs on this thread. The library's parser gives no access to it.
    static LongBodies*& ofThisThread() noexcept {
        thread_local LongBodies* bodies = nullptr;
        return bodies;
    }

    /// Adds a piece to the body of the request that is being read. Returns false to close its connection.
    [[nodiscard]] bool add(const http_parser& parser, restinio::impl::http_parser_ctx_t& request,
                           const char* piece, std::size_t length) const {
        std::string& body = request.m_body;
        const bool becomesLong = body.size() <= m_limits.usual && body.size() + length > m_limits.usual;
        if (becomesLong && !m_mayBeLong(headOf(parser, request))) {
            return false;
        }
        body.append(piece, std::min(length, m_limits.greatest - body.size()));
        return true;
    }

private:
    static HttpRequest headOf(const http_parser& parser, const restinio::impl::http_parser_ctx_t& request) {
        HttpRequest head = requestOf(request.m_header);
        head.method = http_method_str(static_cast<http_method>(parser.method));
        return head;
    }

    const Limits m_limits;
    const std::function<bool(HttpRequest)> m_mayBeLong;
};

}  // namespace host
