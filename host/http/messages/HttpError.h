#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace host {

/// The code of a request with a token that is not valid.
inline constexpr const char* kWrongToken = "wrong-token";

/// Thrown by a handler that refuses a request. The response is {"error": {"code", "message"}} with the
/// status.
class HttpError : public std::runtime_error {
public:
    /// `code` is for programs and never changes ("not-found"); `message` is for people.
    HttpError(int status, std::string code, const std::string& message)
        : std::runtime_error(message), m_status(status), m_code(std::move(code)) {}

    [[nodiscard]] int status() const noexcept { return m_status; }
    [[nodiscard]] const std::string& code() const noexcept { return m_code; }

private:
    int m_status;
    std::string m_code;
};

/// Returns the value; throws `HttpError` 503 if the database has failed.
template <typename Value>
[[nodiscard]] Value storedOr503(std::optional<Value> value) {
    if (!value) {
        throw HttpError(503, "database", "the database does not respond; see the log");
    }
    return std::move(*value);
}

/// The same for a change that the journal makes and keeps while the database refuses changes.
template <typename Value>
[[nodiscard]] Value changedOr503(std::optional<Value> value) {
    if (!value) {
        throw HttpError(
            503, "database",
            "not stored yet: the database refuses changes now; what the journal has changed is kept "
            "and stored later (see the log); repeat the request then");
    }
    return std::move(*value);
}

/// Throws `HttpError` 503 unless the database has done it.
inline void doneOr503(bool done) {
    static_cast<void>(storedOr503(done ? std::optional(true) : std::nullopt));
}

/// The same for a change that the journal makes.
inline void requireChanged(bool done) {
    static_cast<void>(changedOr503(done ? std::optional(true) : std::nullopt));
}

}  // namespace host
