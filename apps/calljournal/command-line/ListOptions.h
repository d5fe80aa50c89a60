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

enum class ListOption { eRequired, eOptional };

/// The positional LIST. `listNamed` accepts the value; it is empty if it is optional and not given.
void addListOption(CLI::App& app, std::string& list, ListOption kind = ListOption::eRequired);

/// -n N or --limit N, a positive whole number. `limit` is unchanged if the option is not given.
void addLimitOption(CLI::App& app, std::size_t& limit, const std::string& help);

/// The required --format FORMAT, one of `formats`.
void addFormatOption(CLI::App& app, std::string& format, const std::vector<std::string>& formats,
                     const std::string& help);

/// The positional ENTRY, an entry id or a unique id, any number of times.
void addEntriesOption(CLI::App& app, std::vector<std::string>& entries, const std::string& help);

/// Prints to the standard error output that the list has no such entry, and the command that prints its
/// entries.
void printUnknown(const std::string& entryId, ListName list, const CommonOptions& common);

}  // namespace calljournal
