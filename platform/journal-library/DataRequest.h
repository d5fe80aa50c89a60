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

    /// A row that is to be deleted. The unique id names it; where that is empty, the entry id does.
    struct Key {
        std::string uniqueId;
        std::string entryId;
        bool operator==(const Key&) const = default;
    };
    /// A row that is to be written: the row with its unique id is replaced; an item with an empty unique
    /// id, or with one that the table does not hold, becomes a new row. A callback's row is the one with
    /// its entry id.
    using Item =
        std::variant<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem, CallBackItem>;

    Reason reason = Reason::eRead;
    /// The table or the other schema that is meant, as written.
    std::string schema;

    /// eWrite on a call list: the items, in order, all of the table's own kind.
    std::vector<Item> items;
    /// eDelete: the rows, or all rows of the table. One of the two is always there.
    std::vector<Key> keys;
    bool allEntries = false;
    /// eUpdate: the settings, in order; at least one.
    std::vector<std::pair<std::string, std::string>> settings;
    /// eRead: which columns are wanted (empty: all), how many rows are passed over, and how many are wanted
    /// at most.
    std::string resultCols;
    std::uint32_t offset = 0;
    std::uint32_t rowLimit = kNoRowLimit;

    static constexpr std::uint32_t kNoRowLimit = 0xffffffffU;
};

/// Reads a request document. Nothing, so that the answer is "failed", for a text that cannot be read, an
/// unknown reason, a delete request that names neither rows nor all of them, an update without a setting,
/// and a write with an item of another kind than the table's, or to a schema that is no call list. Pure;
/// any thread may call; nothing throws.
[[nodiscard]] std::optional<DataRequest> parseDataRequest(const std::string& request);

}  // namespace journalxml
