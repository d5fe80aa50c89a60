#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "host/presentation/ListName.h"

namespace calljournal {

/// The text of an entry for people: its name and kind, its members, and a table of its calls, cut to `width`
/// columns. Leaves out empty members and escapes control characters. `item` is the result of `itemJson`. Pure
/// and thread-safe.
[[nodiscard]] std::string entryText(ListName list, const nlohmann::ordered_json& item, std::size_t width);

}  // namespace calljournal
