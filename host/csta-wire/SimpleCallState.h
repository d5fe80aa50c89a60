#pragma once

#include <optional>
#include <string_view>

namespace host {

/// The state of a call of two parties as one word, and the connection states that it stands for, all as
/// ECMA-323 values. `own` is the state of the device that was asked about.
struct SimpleCallState {
    std::string_view word;
    std::string_view own;
    std::string_view other;
};

/// Both return `std::nullopt` if there is no such state.
[[nodiscard]] std::optional<SimpleCallState> simpleCallState(std::string_view word) noexcept;
[[nodiscard]] std::optional<SimpleCallState> simpleCallState(std::string_view own,
                                                             std::string_view other) noexcept;

}  // namespace host
