#pragma once

#include <filesystem>

#include "apps/calljournal/diagnosis/Finding.h"
#include "host/config/Configuration.h"

namespace calljournal {

/// Examines the data directory, the token's file and the database in it. Reads only; a server may run there.
[[nodiscard]] Findings examineData(const std::filesystem::path& directory);

/// Examines the certificates and keys that the configuration names, and the secrets of its webhooks.
[[nodiscard]] Findings examineFiles(const host::Configuration& configuration);

/// Examines an account file, and the telephone program that it needs.
[[nodiscard]] Findings examineSip(const std::filesystem::path& account);

}  // namespace calljournal
