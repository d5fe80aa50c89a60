#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace host {

/// The row of a unique id; `std::nullopt` for a text that is no unique id. Unique ids are row ids in decimal,
/// and no row id is ever used again.
[[nodiscard]] std::optional<std::int64_t> rowIdOf(const std::string& uniqueId);

[[nodiscard]] std::string uniqueIdOf(std::int64_t rowId);

}  // namespace host
