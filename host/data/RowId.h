#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace host {

/// The row that a unique id names; nothing for a text that no unique id has. Unique ids are row ids in decimal, and no row
/// id is ever used again.
[[nodiscard]] std::optional<std::int64_t> rowIdOf(const std::string& uniqueId);

[[nodiscard]] std::string uniqueIdOf(std::int64_t rowId);

}  // namespace host
