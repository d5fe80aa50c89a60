#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "host/history/CallFilter.h"

namespace host {

/// The deletion of calls by a user: from the history, from the lists that show them, and from the switch's
/// log where an entry of a list has them (docs/database.md). Thread-safe.
class CallDeletionIfc {
public:
    CallDeletionIfc() = default;
    CallDeletionIfc(const CallDeletionIfc&) = delete;
    CallDeletionIfc& operator=(const CallDeletionIfc&) = delete;
    virtual ~CallDeletionIfc() = default;

    /// Deletes the calls that fulfil the filter; all calls if it is empty. Returns their number, or
    /// std::nullopt if the database failed.
    [[nodiscard]] virtual std::optional<std::size_t> remove(const CallFilter& filter) = 0;
    /// Deletes one call. Returns the number of deleted calls, 0 or 1, or std::nullopt if the database failed.
    [[nodiscard]] virtual std::optional<std::size_t> remove(std::int64_t id) = 0;
};

}  // namespace host
