#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "host/framework/TextInvoker.h"
#include "journal-items/ListTraits.h"

namespace host {

/// Carries out the list requests of remote clients (docs/messages.md, "Lists"). The target of its messages is
/// the line's journal.
///
/// The journal keeps a deletion that the database rejects, for a retry. So the response counts the rows:
///  1. read the ids of the rows;
///  2. let the journal delete, in one change;
///  3. read the ids again. Those that are still stored remain.
///
/// A request that cannot be read, or a failed read of the database, gets the response "failure". Every
/// message gets exactly one response; it never throws.
///
/// Thread-safe: constant after construction.
class ListInvoker final : public TextInvoker {
public:
    /// Returns the unique ids of the list's rows in the database, of callbacks the entry ids;
    /// `std::nullopt` if the database fails.
    using StoredIds = std::function<std::optional<std::set<std::string>>(ListName)>;

    explicit ListInvoker(StoredIds storedIds) : TextInvoker("Lists"), m_storedIds(std::move(storedIds)) {}

private:
    [[nodiscard]] std::string responseTo(std::string_view message, Executable* target) const override;

    const StoredIds m_storedIds;
};

}  // namespace host
