#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/presentation/ListName.h"

namespace CLI {
class App;
}

/// Options that several sub-commands about lists have. Requires: the value of an option outlives its `app`.
namespace calljournal {

struct CommonOptions;

/// The required positional LIST. `listNamed` accepts the value.
void addListOption(CLI::App& app, std::string& list);

/// --limit N, a positive whole number. `limit` is unchanged if the option is not given.
void addLimitOption(CLI::App& app, std::size_t& limit, const std::string& help);

/// The required --format FORMAT, one of `formats`.
void addFormatOption(CLI::App& app, std::string& format, const std::vector<std::string>& formats,
                     const std::string& help);

/// The positional ENTRY_ID, any number of times.
void addEntryIdsOption(CLI::App& app, std::vector<std::string>& entryIds, const std::string& help);

/// Prints to the standard error output that the list has no such entry, and the command that prints its
/// entries.
void printUnknown(const std::string& entryId, ListName list, const CommonOptions& common);

}  // namespace calljournal
