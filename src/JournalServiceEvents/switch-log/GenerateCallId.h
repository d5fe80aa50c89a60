#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace journal {

/// Returns an id for a call that the phone never saw, from which its entry id is made: eight upper-case
/// hexadecimal digits.
[[nodiscard]] inline std::string generateCallId() {
    std::array<char, 9> digits{};
    std::snprintf(digits.data(), digits.size(), "%.8X", static_cast<unsigned>(std::rand()));
    return digits.data();
}

}  // namespace journal
