#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "bench/baseline/BaselineList.h"

namespace bench {

/// Stores the entries of the baseline: one durable transaction for each call, with the settings of the
/// product's database (WAL, `synchronous = FULL`) and statements that are prepared once. Not thread-safe.
/// Operations throw SQLite::Exception.
class BaselineStore {
public:
    explicit BaselineStore(const std::filesystem::path& file);

    /// Carries out a request document of `requestFor`: parses it, and writes its values.
    void carryOut(std::string_view request);

private:
    static SQLite::Database opened(const std::filesystem::path& file);

    SQLite::Database m_database;
    SQLite::Statement m_writeEntry;
    SQLite::Statement m_writeCall;
    SQLite::Statement m_deleteEntry;
};

/// The request document that writes the entry with its newest call, and deletes the evicted entry, if any.
[[nodiscard]] std::string requestFor(const BaselineEntry& entry, std::int64_t evicted);

}  // namespace bench
