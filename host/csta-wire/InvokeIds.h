#pragma once

#include <functional>
#include <optional>

namespace host {

/// Assigns the ids of one side's requests: 1 to 9998, then 1 again. The other side's requests have their own
/// number space. Not thread-safe.
class InvokeIds {
public:
    static constexpr int kFirst = 1;
    static constexpr int kLast = 9998;

    /// Returns the next id for which `isWaiting` is false; `std::nullopt` if every id is waiting for its
    /// response.
    [[nodiscard]] std::optional<int> next(const std::function<bool(int)>& isWaiting);

private:
    int m_next = kFirst;
};

}  // namespace host
