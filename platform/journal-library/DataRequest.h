#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "journal-items/CallBackItem.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

namespace journalxml {

/// A request document as the database reads it. A plain value without synchronisation.
struct DataRequest {
    enum class Reason { eRead, eWrite, eUpdate, eDelete };

    /// A row to delete. The unique id names it; if that is empty, the entry id does.
    struct Key {
        std::string uniqueId;
        std::string entryId;
        bool operator==(const Key&) const = default;
    };
    /// A row to write. It replaces the row with its unique id; an item with an empty or unknown unique id
    /// becomes a new row. A callback's key is its entry id.
    using Item =
        std::variant<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem, CallBackItem>;

    Reason reason = Reason::eRead;
    /// The name of the table or other schema, as written in the document.
    std::string schema;

    /// eWrite: the items in order, all of the table's own kind.
    std::vector<Item> items;
    /// eDelete: the rows, or all rows of the table. One of the two is always set.
    std::vector<Key> keys;
    bool allEntries = false;
    /// eUpdate: the settings, in order; at least one.
    std::vector<std::pair<std::string, std::string>> settings;
    /// eRead: the columns (empty: all), the number of rows to skip, and the maximum number of rows.
    std::string resultCols;
    std::uint32_t offset = 0;
    std::uint32_t rowLimit = kNoRowLimit;

    static constexpr std::uint32_t kNoRowLimit = 0xffffffffU;
};

/// Reads a request document. Returns `std::nullopt`, which the caller reports as "failed", for an unreadable
/// text, an unknown reason, a delete request that names no rows, an update without a setting, a write with an
/// item of another kind than the table's, and a write to a schema that is no call list. Pure; any thread may
/// call; it never throws.
[[nodiscard]] std::optional<DataRequest> parseDataRequest(const std::string& request);

}  // namespace journalxml
