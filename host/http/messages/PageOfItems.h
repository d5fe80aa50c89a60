#pragma once

#include <charconv>
#include <cstddef>
#include <limits>
#include <string>

#include "host/http/messages/HttpError.h"
#include "host/http/messages/HttpRequest.h"

namespace host {

/// The page that a request asks for by `limit` and `offset`.
class PageOfItems {
public:
    /// Throws `HttpError` 400 if a parameter is not a number.
    explicit PageOfItems(const HttpRequest& request)
        : m_offset(number(request, "offset", 0)),
          m_limit(number(request, "limit", std::numeric_limits<std::size_t>::max())) {}

    [[nodiscard]] std::size_t offset() const noexcept { return m_offset; }
    [[nodiscard]] std::size_t limit() const noexcept { return m_limit; }

private:
    static std::size_t number(const HttpRequest& request, const std::string& name, std::size_t fallback) {
        const std::string& text = request.queryValue(name);
        if (text.empty()) {
            return fallback;
        }
        std::size_t value = 0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
        if (result.ec != std::errc{} || result.ptr != text.data() + text.size()) {
            throw HttpError(400, "bad-number", name + " must be a whole number");
        }
        return value;
    }

    const std::size_t m_offset;
    const std::size_t m_limit;
};

}  // namespace host
