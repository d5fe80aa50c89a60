#pragma once

#include <cstddef>
#include <string>

#include "journal-items/ListTraits.h"

namespace host {

/// The name of one call of the list in a sentence: "missed call", "callback".
[[nodiscard]] std::string callWord(ListName list);
/// The name of one entry of the list, which has one call or more: "missed entry", "callback".
[[nodiscard]] std::string entryWord(ListName list);
/// A number of entries of the list: "1 missed entry", "2 callbacks".
[[nodiscard]] std::string countText(ListName list, std::size_t count);

}  // namespace host
