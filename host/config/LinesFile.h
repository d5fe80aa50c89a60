#pragma once

#include <filesystem>
#include <vector>

#include "host/config/Configuration.h"

namespace host {

/// Adds the lines of a CSV file (RFC 4180). Its first row names the columns: `device`, and if wanted `name`
/// and `switch`. Throws `std::runtime_error` with the row for a file that cannot be read, another column, a
/// row without a device, and a device that is there already.
void addLinesOf(const std::filesystem::path& file, std::vector<Configuration::Line>& lines);

}  // namespace host
