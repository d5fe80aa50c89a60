#pragma once

#include <string>
#include <vector>

namespace host {

class DigitAnalysis;

/// A set of numbers, and of begins of numbers, as a person writes them.
///
/// Constant after construction. Thread-safe.
class NumberPatterns {
public:
    /// `patterns`: numbers in any spelling; with "*" at the end all numbers that begin so. A number is the
    /// same with any of `dialledBefore` before it (feature access codes, the outside line); empty ones are
    /// ignored. `digits` is borrowed and outlives the object.
    NumberPatterns(const std::vector<std::string>& patterns, const std::vector<std::string>& dialledBefore,
                   DigitAnalysis& digits);

    [[nodiscard]] bool empty() const noexcept { return m_numbers.empty() && m_begins.empty(); }
    /// Compares numbers in their normalised forms (`DigitAnalysis::normalise`).
    [[nodiscard]] bool matches(const std::string& number) const;

private:
    [[nodiscard]] bool matchesItself(const std::string& dialled) const;
    [[nodiscard]] std::string normalised(std::string number) const;
    [[nodiscard]] std::string internationalBegin(const std::string& begin) const;

    DigitAnalysis& m_digits;
    /// Without separators.
    const std::vector<std::string> m_dialledBefore;
    std::vector<std::string> m_numbers;
    std::vector<std::string> m_begins;
};

}  // namespace host
