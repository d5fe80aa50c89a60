#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/presentation/ListName.h"

namespace CLI {
class App;
}

/// What the sub-commands about lists and entries have in common. An option's value outlives the `app` that it is added to.
namespace calljournal {

struct CommonOptions;

/// The positional LIST, which must stand. What is read can be given to `listNamed`.
void addListOption(CLI::App& app, std::string& list);

/// --limit N, a whole number from 1 on; 0 stays where it is not given.
void addLimitOption(CLI::App& app, std::size_t& limit, const std::string& help);

/// --format FORMAT, one of the two, which must stand.
void addFormatOption(CLI::App& app, std::string& format, const std::vector<std::string>& formats,
                     const std::string& help);

/// The positional ENTRY_ID, any number of times.
void addEntryIdsOption(CLI::App& app, std::vector<std::string>& entryIds, const std::string& help);

/// Says on the standard error output that the list has no such entry, and how to see those that it has.
void printUnknown(const std::string& entryId, host::ListName list, const CommonOptions& common);

}  // namespace calljournal
