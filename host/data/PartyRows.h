#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "host/database/Database.h"

class DigitAnalysisServiceIfc;

namespace host {

/// The parties of the calls of one line as rows: each number with each name under which a call was filed. A
/// party without calls has no row, so that no name outlives its calls.
///
/// Use it inside one `Database::read` or `write` call. Every operation throws if the database fails.
class PartyRows {
public:
    /// Everything is borrowed. Without `digits` numbers are compared as they are written.
    PartyRows(Database::Session& session, const std::string& line, DigitAnalysisServiceIfc* digits)
        : m_session(session), m_line(line), m_digits(digits) {}

    /// Returns the row of the party; adds it if there is none.
    [[nodiscard]] std::int64_t idOf(const std::string& number, const std::string& name);
    /// Removes the parties that no call has; of all, or of these.
    void removeUnused();
    void removeUnused(const std::set<std::int64_t>& parties);
    /// Computes the form in which numbers are compared again, for other dialling rules.
    void reindex();
    /// The form in which numbers are compared, which is that of the phonebook.
    [[nodiscard]] std::string lookupOf(std::string number) const;

private:
    Database::Session& m_session;
    const std::string& m_line;
    DigitAnalysisServiceIfc* const m_digits;
};

}  // namespace host
