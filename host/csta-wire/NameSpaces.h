#pragma once

#include <string>
#include <string_view>

namespace host {

/// The name space of written messages; `edition` is "ed2" to "ed6". Reading uses local names only.
[[nodiscard]] std::string cstaNameSpace(std::string_view edition);

/// The name space of the application session services.
inline constexpr std::string_view kSessionNameSpace =
    "http://www.ecma-international.org/standards/ecma-354/appl_session";

}  // namespace host
