#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "journal-items/ListTraits.h"

namespace host {

/// A selection of calls: those that fulfil every condition that is set. A plain value.
struct CallFilter {
    /// The start of the call: from `since` on, and before `until`.
    std::optional<std::chrono::sys_seconds> since;
    std::optional<std::chrono::sys_seconds> until;
    /// The party's number, in any spelling; empty for any.
    std::string number;
    /// A text in the party's name, in its contact's name now or in its number, as `SearchText` compares;
    /// empty for any.
    std::string search;
    std::optional<ListName> list;
    std::optional<bool> outgoing;
    std::optional<bool> viewed;
    /// The shortest duration.
    std::optional<std::chrono::seconds> minDuration;

    [[nodiscard]] bool operator==(const CallFilter&) const = default;
    [[nodiscard]] bool isEmpty() const noexcept {
        return !since && !until && number.empty() && search.empty() && !list && !outgoing && !viewed &&
               !minDuration;
    }
};

/// One page of a selection, in the order of the calls' start.
struct CallQuery {
    CallFilter filter;
    std::size_t limit = 50;
    bool oldestFirst = false;
    /// The end of the previous page (`CallPage::next`); empty for the first page.
    std::string cursor;
};

}  // namespace host
