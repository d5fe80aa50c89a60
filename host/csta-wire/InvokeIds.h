#pragma once

#include <functional>
#include <optional>

namespace host {

/// Gives out the ids of one side's requests: 1 to 9998 in turn, and 1 again. The other side's requests have a number
/// space of their own. Not thread-safe.
class InvokeIds {
public:
    static constexpr int kFirst = 1;
    static constexpr int kLast = 9998;

    /// The next id for which `isWaiting` is false; nothing when every id still waits for its answer.
    [[nodiscard]] std::optional<int> next(const std::function<bool(int)>& isWaiting);

private:
    int m_next = kFirst;
};

}  // namespace host
