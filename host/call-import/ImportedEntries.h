#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "host/data/ContactRows.h"
#include "host/database/Database.h"
#include "host/history/Call.h"

namespace host {

/// The changes that an import has made to entries. A plain value.
struct ImportRun {
    /// The entries that it has made, which the journal does not know.
    std::set<std::int64_t> made{};
    /// Older entries that took calls over, and those of them that are unviewed now.
    std::set<std::int64_t> extended{};
    std::set<std::int64_t> unviewed{};
};

/// Gives calls of a file to the entries of their parties. An entry has the calls of a party in a list by the
/// journal's own rules: of a number, of a missed call also of the line key, of a dialled call by the key that
/// groups them; without a number, of a name. A list keeps 1000 entries, the newest.
///
/// Entries that the import has made get their ten newest calls listed. Those of older entries are not: the
/// journal, which may hold the entry, lists them itself (`JournalServiceIfc::replaceEntry`).
///
/// Use it inside one `Database::write` call. Every operation throws if the database fails.
class ImportedEntries {
public:
    static constexpr std::size_t kMaxEntries = 1000;

    /// Everything is borrowed. Reads the keys of all entries.
    ImportedEntries(Database::Session& session, const std::string& line, DigitAnalysisServiceIfc* digits,
                    ImportRun& run);

    /// A call of the history that has no entry.
    struct NewCall {
        std::int64_t id = 0;
        const Call* call = nullptr;
        bool unviewed = false;
    };
    /// Gives the calls to entries. A call that was called back gets none.
    void take(const std::vector<NewCall>& calls);

private:
    /// The calls of one entry, oldest first.
    using Group = std::vector<NewCall>;

    void give(std::int64_t entry, const Group& group);
    void order(std::int64_t entry, const Group& group);
    void list(std::int64_t entry, std::size_t added);
    /// Makes an entry for the calls; 0 if the list is full of newer ones.
    [[nodiscard]] std::int64_t make(const std::string& key, const Group& group);
    [[nodiscard]] bool makesSpace(ListName list, const std::string& time);
    void remove(std::int64_t entry);
    [[nodiscard]] std::string freeEntryId(const std::string& time);

    Database::Session& m_session;
    const std::string& m_line;
    ContactRows m_contacts;
    ImportRun& m_run;
    std::map<std::string, std::int64_t> m_entries;
    std::map<ListName, std::size_t> m_counts;
};

}  // namespace host
