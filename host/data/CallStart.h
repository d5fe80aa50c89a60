#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/database/DatabaseSession.h"

/// The begin of a call as the table `call` has it, from the text of an occurrence.
namespace host {

/// Reads "2026-11-21T05:22:05Z", as the journal writes it; std::nullopt for any other text. Pure.
[[nodiscard]] std::optional<std::int64_t> utcSecondsOf(std::string_view text) noexcept;

/// Returns seconds since 1970, 0 for a text that is no time. One without a zone is `ahead` of UTC if
/// `isLocal`. Throws if the database, which reads all but the usual form, fails.
[[nodiscard]] std::int64_t callStart(DatabaseSession& session, const std::string& text, bool isLocal,
                                     std::chrono::seconds ahead);

}  // namespace host
