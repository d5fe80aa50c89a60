#pragma once

#include <string>

namespace host {

/// One party of a call at a switch. A plain value.
struct SwitchParty {
    std::string number;
    std::string name;
    /// Number and name are restricted.
    bool anonymous = false;

    [[nodiscard]] bool operator==(const SwitchParty&) const = default;
};

/// True for the same number, independent of the name. All anonymous parties are the same.
[[nodiscard]] inline bool isSameDevice(const SwitchParty& one, const SwitchParty& other) {
    return one.anonymous == other.anonymous && one.number == other.number;
}

}  // namespace host
