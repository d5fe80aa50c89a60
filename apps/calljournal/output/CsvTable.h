#pragma once

#include <string>
#include <vector>

#include "apps/calljournal/output/TextTable.h"

namespace calljournal {

/// The rows as comma-separated values (RFC 4180) with a row of titles in small letters. No spreadsheet takes
/// a cell for a formula. Pure and thread-safe.
[[nodiscard]] std::string csvTable(const std::vector<std::string>& titles, const std::vector<TableRow>& rows);

}  // namespace calljournal
