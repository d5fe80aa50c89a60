#pragma once

#include <string>

namespace bench {

/// Registers a benchmark that adds calls to the missed entries with ten calls in the database of a data
/// directory, on the disk. Throws `std::runtime_error` if there is no such entry. The database changes.
void registerFiling(const std::string& data);

}  // namespace bench
