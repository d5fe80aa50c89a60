#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>

namespace host {

/// True if the end of the call with that number and time is approximate. Any thread may call it; it must not
/// block. May be empty.
using EndIsApproximate = std::function<bool(const std::string& number, const std::string& time)>;

/// Adds "endApproximate" to the occurrences of an item whose end is approximate, and returns the item.
[[nodiscard]] inline nlohmann::ordered_json withApproximateEnds(nlohmann::ordered_json item,
                                                                const EndIsApproximate& isApproximate) {
    const auto occurrences = item.find("occurrences");
    if (isApproximate && occurrences != item.end()) {
        for (nlohmann::ordered_json& one : *occurrences) {
            if (isApproximate(one["number"].get<std::string>(), one["time"].get<std::string>())) {
                one["endApproximate"] = true;
            }
        }
    }
    return item;
}

}  // namespace host
