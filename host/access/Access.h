#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The rights of a client of the HTTP API, from the least to the most: each scope includes those before it.
/// docs/http-api.md lists what each has.
enum class Scope { eNone, eMetrics, eRead, eWrite, eAdmin };

[[nodiscard]] constexpr bool includes(Scope granted, Scope needed) noexcept {
    return granted >= needed;
}

/// "read". Empty for `eNone`.
[[nodiscard]] std::string_view wordOf(Scope scope) noexcept;
/// std::nullopt for another word; no token has the scope `eNone`.
[[nodiscard]] std::optional<Scope> scopeOf(std::string_view word) noexcept;

/// The rights that the token of a request grants.
struct Access {
    Scope scope = Scope::eNone;
    /// The only line that it is valid for; empty for all.
    std::string line{};
    /// The id of a named token; 0 for the token of the data directory, which does not expire.
    std::int64_t tokenId = 0;
};

}  // namespace host
