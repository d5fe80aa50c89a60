#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/history/CallFilter.h"

class DigitAnalysisServiceIfc;

namespace host {

class Query;

/// A filter as a condition in SQL about the rows of the table `call`:
///
///     const CallSelection selection(line, filter, digits);
///     Query query = session.query(("SELECT count(*) FROM call WHERE " + selection.condition()).c_str());
///     selection.bind(query);
///
/// Equal sets of conditions have equal texts, so that their statements are prepared once. A plain value; any
/// thread may call.
class CallSelection {
public:
    /// `digits` is used by the constructor only; without it numbers are compared as they are written.
    CallSelection(const std::string& line, const CallFilter& filter, DigitAnalysisServiceIfc* digits);

    /// The condition with its parameters as `?`. It uses the name `call`.
    [[nodiscard]] const std::string& condition() const noexcept { return m_condition; }
    /// Binds the values of the condition; a query with further parameters binds those before it first.
    void bind(Query& query) const;

    /// The condition about the rows of the table `party` for `number` and `search`; empty for a filter
    /// without them.
    [[nodiscard]] static CallSelection ofParties(const std::string& line, const CallFilter& filter,
                                                 DigitAnalysisServiceIfc* digits);

private:
    CallSelection() = default;

    void require(const std::string& condition);
    void add(std::variant<std::int64_t, std::string> value) { m_values.push_back(std::move(value)); }
    void requireNumber(const std::string& line, const std::string& number, DigitAnalysisServiceIfc* digits);
    void requireText(const std::string& line, const std::string& text);
    void requireTimes(const CallFilter& filter);
    void requireKind(const CallFilter& filter);

    std::string m_condition;
    std::vector<std::variant<std::int64_t, std::string>> m_values;
};

}  // namespace host
