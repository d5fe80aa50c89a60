#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

class DigitAnalysisServiceIfc;

namespace host {

class Database;

/// The calls and the note of a number. A plain value.
struct PartySummary {
    /// In the form that the dialling rules give it.
    std::string number;
    /// The name of its contact, else the name of its newest call.
    std::string displayName;
    /// The calls of each list, calls that were answered elsewhere among the missed ones; their sum; and the
    /// time for which the parties talked.
    std::int64_t missed = 0;
    std::int64_t dialled = 0;
    std::int64_t received = 0;
    std::int64_t forwarded = 0;
    std::int64_t calls = 0;
    std::chrono::seconds talkTime{0};
    std::optional<std::chrono::sys_seconds> firstCall;
    std::optional<std::chrono::sys_seconds> lastCall;
    /// The user's note; empty if there is none.
    std::string note;
};

/// The numbers of one line with their notes. Numbers are taken in any spelling. Thread-safe.
class PartyNotes {
public:
    /// The database and `digits` are borrowed and outlive the object. Without `digits` numbers are compared
    /// as they are written.
    PartyNotes(Database& database, std::string line, DigitAnalysisServiceIfc* digits)
        : m_database(database), m_line(std::move(line)), m_digits(digits) {}

    /// A number without calls has a summary, too. std::nullopt if the database failed.
    [[nodiscard]] std::optional<PartySummary> find(const std::string& number) const;
    /// Replaces the note; an empty one removes it. Returns false if the database failed.
    [[nodiscard]] bool setNote(const std::string& number, const std::string& note);

private:
    [[nodiscard]] std::string normalised(std::string number) const;

    Database& m_database;
    const std::string m_line;
    DigitAnalysisServiceIfc* const m_digits;
};

}  // namespace host
