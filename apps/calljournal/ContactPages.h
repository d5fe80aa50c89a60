#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "journal-items/Contact.h"

namespace host {
class RemoteClient;
}

namespace calljournal {

/// Reads the contacts of a running server that are found by `search` (empty: all), in the order of their names, at most
/// `limit`, and hands each to `visitor`. Answers how many are found. Throws `RemoteError` when the server fails. One
/// thread.
std::size_t visitContacts(host::RemoteClient& client, const std::string& search,
                          std::optional<std::size_t> limit,
                          const std::function<void(const Contact&)>& visitor);

}  // namespace calljournal
