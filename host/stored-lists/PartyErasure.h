#pragma once

#include <functional>
#include <string>

#include "host/stored-lists/StoredEntries.h"

namespace host {

/// Removes a number from the calls of other parties, from the callbacks and from the notes, after the calls
/// of its own party were deleted. Thread-safe.
class PartyErasure {
public:
    /// `entries` is borrowed and outlives the object.
    explicit PartyErasure(StoredEntries& entries) : m_entries(entries) {}

    /// `number` in any spelling. Returns false if the database fails.
    [[nodiscard]] bool erase(const std::string& number);

private:
    [[nodiscard]] bool eraseFromEntries(const std::string& lookup);
    [[nodiscard]] bool eraseRows(const std::string& lookup);
    [[nodiscard]] bool eraseCallBacks(const std::string& lookup);
    void forEachText(Database::Session& session, const std::string& lookup,
                     const std::function<void(const std::string&, const std::string&)>& action) const;
    [[nodiscard]] std::string lookupOf(std::string number) const;

    StoredEntries& m_entries;
};

}  // namespace host
