#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace journal {

/// An id for a call that the phone never saw, to make its entry id of: eight upper-case hexadecimal digits.
[[nodiscard]] inline std::string freshCallId() {
    std::array<char, 9> digits{};
    std::snprintf(digits.data(), digits.size(), "%.8X", static_cast<unsigned>(std::rand()));
    return digits.data();
}

}  // namespace journal
