#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "host/history/CallCounts.h"

namespace host {

class Query;

/// The key of a call's group (`CallGroup::key`) as an expression in SQL. A plain value.
class CallGroupKey {
public:
    CallGroupKey(const StatisticsQuery& query, std::chrono::sys_seconds now);

    /// Uses the names `start`, `list`, and `person` for an id of the party.
    [[nodiscard]] const std::string& expression() const noexcept { return m_expression; }
    void bind(Query& query) const;

private:
    std::string m_expression;
    std::vector<std::int64_t> m_values;
};

}  // namespace host
