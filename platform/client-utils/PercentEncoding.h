#pragma once

#include <string>
#include <string_view>

/// Percent-encoding of RFC 3986. Pure functions; any thread may call.
namespace percentencoding {

/// Replaces each '%' with two hexadecimal digits by the byte that they stand for. A '%' without two digits is
/// kept.
[[nodiscard]] std::string decode(std::string_view text);

}  // namespace percentencoding
