#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "host/presentation/ListName.h"

namespace calljournal {

/// An entry of a list as people read it: what it is, who, and a table of its calls, cut to `width` columns; what is empty
/// is left out, and what could disturb a terminal is made visible. `item` is what `itemJson` made of it. Pure; any
/// thread may call.
[[nodiscard]] std::string entryText(host::ListName list, const nlohmann::ordered_json& item,
                                    std::size_t width);

}  // namespace calljournal
