#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/data/SqliteDataAccess.h"
#include "host/database/Database.h"
#include "host/digits/DigitAnalysis.h"
#include "tests/reliability/database/SimulatedDisk.h"

namespace reliability {

/// The journal's requests to its database on a simulated disk, made by dice: calls are filed, entries get
/// further calls and are deleted, full lists lose their oldest entry, calls are imported, callbacks and
/// settings change. A plain model keeps what the database has reported as done.
///
/// One thread at a time.
class DatabaseWork {
public:
    /// Opens the database `file` on the disk. The digits are borrowed. Throws `host::DatabaseError`.
    DatabaseWork(std::shared_ptr<SimulatedDisk> disk, const std::filesystem::path& file);
    ~DatabaseWork();
    DatabaseWork(const DatabaseWork&) = delete;
    DatabaseWork& operator=(const DatabaseWork&) = delete;

    /// Makes the model that of the database's contents; false if they cannot be read.
    [[nodiscard]] bool takeModel();

    /// Carries out one change. Returns true if the database has reported it as done.
    bool change(Dice& dice);
    /// True if the last change deleted the oldest entry of a full list, which a power cut may bring back.
    [[nodiscard]] bool wasEviction() const noexcept { return m_wasEviction; }
    /// Files one call; returns its unique id, an empty text if the database has refused it.
    std::string fileCall(Dice& dice);
    /// Writes the row of a live call on a second connection, which does not flush the disk.
    void noteLiveCall(Dice& dice);

    /// Files calls until the missed list has as many entries as a list may have, with little text.
    void fillMissedList();

    /// The differences between the database and the model; std::nullopt if the database cannot be read.
    [[nodiscard]] std::optional<std::vector<std::string>> faults();
    /// The content of all tables but that of the live calls, in a short form that is equal for equal ones.
    [[nodiscard]] std::string state();
    /// "ok" if the file is undamaged, else the finding.
    [[nodiscard]] std::string integrity();

    [[nodiscard]] host::Database& database() noexcept { return m_database; }
    [[nodiscard]] host::SqliteDataAccess& access() noexcept { return m_access; }
    /// The unique ids that were given out, those of deleted entries too.
    [[nodiscard]] const std::set<std::string>& givenIds() const noexcept { return m_givenIds; }

private:
    /// An entry of a call list as the model has it: its list and its calls, newest first.
    struct Entry {
        std::string list;
        std::string entryId;
        std::vector<std::string> numbers;
        bool operator==(const Entry&) const = default;
    };
    /// The lists, callbacks and settings by their keys.
    struct Model {
        std::map<std::string, Entry> entries{};
        std::set<std::string> callBacks{};
        std::map<std::string, std::string> settings{};
    };

    template <typename Item>
    std::string file(Dice& dice, const std::string& uniqueId);
    std::string fileAny(Dice& dice, const std::string& list, const std::string& uniqueId);
    bool addToEntry(Dice& dice);
    bool deleteEntries(Dice& dice);
    [[nodiscard]] std::size_t missedEntries() const;
    bool evictOldest();
    bool emptyList(Dice& dice);
    bool importCalls(Dice& dice);
    bool changeCallBacks(Dice& dice);
    bool changeSetting(Dice& dice);
    std::string send(const char* reason, const char* table, const std::string& body);
    [[nodiscard]] std::string newTime();
    [[nodiscard]] std::optional<Model> read();

    const std::shared_ptr<SimulatedDisk> m_disk;
    host::DigitAnalysis m_digits{"DE", {}};
    host::Database m_database;
    host::SqliteDataAccess m_access;
    Model m_model;
    std::set<std::string> m_givenIds;
    /// The ids of new entries that other entries had before.
    std::vector<std::string> m_repeatedIds;
    int m_clock = 0;
    bool m_wasEviction = false;
};

/// A database as an older version of the program has written it (1, 2, ...), an empty disk (0), or one with a
/// missed list that is full (-1).
[[nodiscard]] Files storedFiles(const std::filesystem::path& file, int version);

}  // namespace reliability
