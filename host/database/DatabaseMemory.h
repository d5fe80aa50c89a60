#pragma once

#include <cstdint>

namespace host {

/// The bytes that all connections to databases use now, most of them as caches of bounded size. Thread-safe.
[[nodiscard]] std::int64_t databaseMemory() noexcept;

}  // namespace host
