#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/http/Metrics.h"

namespace host {

class Database;

/// A line that was added while the program ran, or removed then.
struct LineRow {
    std::string device;
    std::string name{};
    /// The name of its switch; empty for the first one.
    std::string switchName{};
    bool isRemoved = false;
};

/// The lines in the database: those that the configuration does not name, and what is stored of all.
/// Thread-safe. Errors: false or std::nullopt if the database fails; the log has the reason.
class LineRows {
public:
    /// Borrowed; outlives the object.
    explicit LineRows(Database& database) : m_database(database) {}

    [[nodiscard]] std::optional<std::vector<LineRow>> read() const;
    /// Replaces the row of the device.
    [[nodiscard]] bool store(const LineRow& row);
    /// Deletes everything that is stored of a line, its calls in transactions of at most 1,000, and its row
    /// last, so that an interrupted deletion can be repeated. Requires: it is not served.
    [[nodiscard]] bool purge(const std::string& device);

    /// The numbers of missed entries that are not viewed, of the lines that have any.
    [[nodiscard]] std::optional<std::map<std::string, std::size_t>> unviewed() const;
    /// The numbers of entries in the lists, by line; else of all lines together, with an empty key.
    [[nodiscard]] std::optional<std::map<std::string, Metrics::LineGauges>> entries(bool isByLine) const;

private:
    Database& m_database;
};

}  // namespace host
