#pragma once

#include <string>

#include "apps/calljournal/reference/CommandText.h"

namespace calljournal {

// Each returns the script that completes the program's command line in a shell: commands, options, the
// words of a value, files and directories.
[[nodiscard]] std::string bashCompletion(const CommandText& program);
[[nodiscard]] std::string zshCompletion(const CommandText& program);
[[nodiscard]] std::string fishCompletion(const CommandText& program);

}  // namespace calljournal
