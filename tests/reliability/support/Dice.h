#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace reliability {

/// Random decisions that are the same for the same seed on every machine.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : m_engine(seed) {}

    /// A number from 0 to `count` - 1. Requires: `count` is not 0.
    [[nodiscard]] std::size_t below(std::size_t count) { return m_engine() % count; }
    /// True in `percent` of 100 cases.
    [[nodiscard]] bool chance(std::size_t percent) { return below(100) < percent; }
    template <typename Value>
    [[nodiscard]] const Value& pick(const std::vector<Value>& values) {
        return values[below(values.size())];
    }
    template <typename Value>
    void shuffle(std::vector<Value>& values) {
        for (std::size_t left = values.size(); left > 1; --left) {
            std::swap(values[left - 1], values[below(left)]);
        }
    }
    [[nodiscard]] std::uint64_t seed() { return m_engine(); }

private:
    std::mt19937_64 m_engine;
};

}  // namespace reliability
