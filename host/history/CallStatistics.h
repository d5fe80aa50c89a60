#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "host/history/CallCounts.h"

class DigitAnalysisServiceIfc;

namespace host {

class Database;

/// Counts the calls of one line, in SQL: a year of half a million calls takes less than a second
/// (docs/performance.md). Thread-safe; a read delays no filing.
class CallStatistics {
public:
    /// The database and `digits` are borrowed and outlive the statistics. Without `digits` numbers are
    /// compared as they are written.
    CallStatistics(Database& database, std::string line, DigitAnalysisServiceIfc* digits)
        : m_database(database), m_line(std::move(line)), m_digits(digits) {}

    /// std::nullopt if the database failed. `now` ends the period for which the offsets of the zone are
    /// computed if the filter has no end.
    [[nodiscard]] std::optional<StatisticsResult> of(const StatisticsQuery& query,
                                                     std::chrono::sys_seconds now) const;

private:
    Database& m_database;
    const std::string m_line;
    DigitAnalysisServiceIfc* const m_digits;
};

}  // namespace host
