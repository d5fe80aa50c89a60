#pragma once

#include <optional>
#include <string>

namespace host {

/// The public numbering plan as it is dialled from one country. Constant after construction; any thread may call.
///
/// The first one of a process loads the plans of all countries (some milliseconds).
class NumberingPlan {
public:
    /// `region`: two capital letters ("DE"). From a country that is not known only numbers with "+" are understood.
    explicit NumberingPlan(std::string region);

    [[nodiscard]] bool supportsRegion() const noexcept { return m_supported; }

    /// The international form ("+4930123456") of what somebody dials: digits, or "+" and digits. It is one of these:
    ///  - "+" or the country's international prefix, a country code, and a number of a possible length there;
    ///  - the country's trunk prefix and a number of a possible length;
    ///  - a number that is in use, as the country writes it inside its borders, where it writes no trunk prefix.
    /// Nothing for the rest: local numbers without area code, emergency numbers, extensions.
    [[nodiscard]] std::optional<std::string> international(const std::string& dialled) const;

private:
    // Constant after construction.
    const std::string m_region;
    const bool m_supported;
    const std::string m_trunkPrefix;
};

}  // namespace host
