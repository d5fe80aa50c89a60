#include "host/database/RowId.h"

#include <charconv>

namespace host {

std::optional<std::int64_t> rowIdOf(const std::string& uniqueId) {
    std::int64_t rowId = 0;
    std::from_chars(uniqueId.data(), uniqueId.data() + uniqueId.size(), rowId);
    // The inverse checks that the text is the one spelling of the id.
    return rowId > 0 && uniqueIdOf(rowId) == uniqueId ? std::optional(rowId) : std::nullopt;
}

std::string uniqueIdOf(std::int64_t rowId) {
    return std::to_string(rowId);
}

}  // namespace host
