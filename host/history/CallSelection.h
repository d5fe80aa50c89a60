#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
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
    /// The condition for `list`, `outgoing`, `viewed` and `minDuration`; empty for a filter without them.
    [[nodiscard]] static CallSelection ofKind(const CallFilter& filter);

private:
    struct Value {
        std::int64_t number;
        /// std::nullopt if the value is the number.
        std::optional<std::string> text;
    };

    CallSelection() = default;

    void require(const std::string& condition);
    /// Requires what the other selection requires.
    void require(CallSelection&& other, const std::string& before = {}, const std::string& after = {});
    void add(std::int64_t number) { m_values.push_back({number, std::nullopt}); }
    void add(const std::string& text) { m_values.push_back({0, text}); }
    void requireNumber(const std::string& line, const std::string& number, DigitAnalysisServiceIfc* digits);
    void requireText(const std::string& line, const std::string& text);
    void requireTimes(const CallFilter& filter);

    std::string m_condition;
    std::vector<Value> m_values;
};

}  // namespace host
