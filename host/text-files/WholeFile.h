#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace host {

/// Returns the contents of a file. A pipe, as `<(...)` of a shell is one, has five seconds to deliver all: so
/// one without a writer does not block the start of the program. Throws `std::runtime_error` with the reason,
/// without the name of the file, if it cannot be read or has more than `most` bytes. Any thread may call.
[[nodiscard]] std::string readWholeFile(const std::filesystem::path& file, std::size_t most);

}  // namespace host
