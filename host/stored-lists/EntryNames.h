#pragma once

#include "host/stored-lists/StoredEntries.h"

namespace host {

/// Renames the entries of the lists when the phonebook changes: an entry gets the names and the picture of
/// the contact that has its number now, or, without one, the name under which its newest call was filed.
/// The history keeps its names. Thread-safe.
class EntryNames {
public:
    /// `entries` is borrowed and outlives the object.
    explicit EntryNames(StoredEntries& entries) : m_entries(entries) {}

    /// Compares all entries with the phonebook. Observers are notified once of each one that changes.
    void refresh();

private:
    template <typename Item>
    void refreshList();

    StoredEntries& m_entries;
};

}  // namespace host
