#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "journal-items/ListTraits.h"

/// The messages in which remote clients delete entries of one list, with a result that counts what is stored,
/// or count the entries that are not loaded, both ways. Pure functions; any thread may call; no bytes make
/// them throw.
namespace journalxml {

/// The outermost element of every list request. It distinguishes them from the journal's own requests.
inline constexpr const char* kListRequest = "ListRequest";

/// A deletion in one change, or a count.
struct ListRequest {
    ListName list = ListName::eMissed;
    /// The entries to delete; empty: all of the list, also those that are not loaded.
    std::vector<std::string> entryIds;
    /// True for a request that deletes no entry and counts those that are stored and not loaded.
    bool countsUnloaded = false;
};

[[nodiscard]] std::string buildListRequest(const ListRequest& request);
/// Returns `std::nullopt` for a text that is too long, unreadable, or no valid request: one with entries or
/// for all of them.
[[nodiscard]] std::optional<ListRequest> parseListRequest(std::string_view text);

/// The result of a deletion.
struct ListDeleted {
    std::size_t deleted = 0;
    /// The entries that the database still stores.
    std::size_t remaining = 0;
    /// The requested entries that the list does not have.
    std::vector<std::string> unknown;
};
[[nodiscard]] std::string buildListDeleted(const ListDeleted& deleted);
/// Returns `std::nullopt` for a failure and for any text that is no such response.
[[nodiscard]] std::optional<ListDeleted> parseListDeleted(std::string_view text);

/// The result of a count.
[[nodiscard]] std::string buildUnloadedCount(std::size_t count);
/// Returns `std::nullopt` for a failure and for any text that is no such response.
[[nodiscard]] std::optional<std::size_t> parseUnloadedCount(std::string_view text);

}  // namespace journalxml
