#pragma once

#include <string>
#include <string_view>

namespace host {

/// The status text of the platform (`communicationsServiceTexts::systemState_...`) for the ECMA-323 value.
/// `initializing` becomes a reset, because the switch has lost its calls. Other values are unchanged.
[[nodiscard]] std::string platformStatus(std::string_view word);

/// True for `initializing` and `disabled`: the switch has lost its monitors, which must be restarted.
[[nodiscard]] bool requiresMonitorRestart(std::string_view word) noexcept;
/// True for a value on which the journal drops its calls.
[[nodiscard]] bool dropsCalls(std::string_view word) noexcept;
/// True for `enabled` and `normal`: the switch is in service.
[[nodiscard]] bool isInService(std::string_view word) noexcept;

}  // namespace host
