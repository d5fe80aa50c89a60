#pragma once

#include <string>
#include <string_view>

namespace host {

/// The status text of the platform (`communicationsServiceTexts::systemState_...`) for the standard's word. A switch
/// that is `initializing` has lost its calls: that is a reset. A word without a text of its own is passed on as it is.
[[nodiscard]] std::string platformStatus(std::string_view word);

/// `initializing` and `disabled`: the switch has no monitors any more, and will want them started again.
[[nodiscard]] bool losesMonitors(std::string_view word) noexcept;
/// `enabled` and `normal`: the switch serves.
[[nodiscard]] bool isServing(std::string_view word) noexcept;

}  // namespace host
