#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/database/Database.h"
#include "journal-items/Contact.h"

class DigitAnalysisServiceIfc;

namespace host {

/// The contacts of one line as rows, with the index of their numbers; a contact's unique id is its row's id.
///
/// Use it inside one `Database::read` or `write` call. Every operation throws if the database fails.
class ContactRows {
public:
    /// The match of a number: the contact's row, and the position of the number, 1 to 4 as in
    /// `Contact::getPhoneNumber`.
    struct Match {
        std::int64_t id = 0;
        std::int32_t position = 0;
    };

    /// Everything is borrowed. Without `digits` numbers are indexed as they are written.
    ContactRows(Database::Session& session, const std::string& line, DigitAnalysisServiceIfc* digits)
        : m_session(session), m_line(line), m_digits(digits) {}

    /// The look-up's SQL; parameters are the line and the number in its indexed form.
    static const char* const kLookUpSql;

    /// Returns the new row's id.
    std::int64_t insert(const Contact& contact);
    /// Of the line's own contacts. Returns false if there is no such row.
    [[nodiscard]] bool update(std::int64_t id, const Contact& contact);
    [[nodiscard]] bool remove(std::int64_t id);

    /// The best contact with that number: an own one before a shared one. Requires: the number is in its
    /// indexed form (`indexed`).
    [[nodiscard]] std::optional<Match> lookUp(const std::string& number);
    /// The best own one.
    [[nodiscard]] std::optional<Match> lookUpOwn(const std::string& number);
    [[nodiscard]] bool isShared(std::int64_t id);
    /// An own contact or a shared one.
    [[nodiscard]] std::optional<Contact> find(std::int64_t id);
    /// The numbers of all own contacts, in their indexed form.
    [[nodiscard]] std::vector<std::string> allNumbers();
    /// The oldest own contact with that id in the directory of its origin.
    [[nodiscard]] std::optional<Contact> findExternal(const std::string& externalId);
    /// The oldest own contact with the same names and the same first number (without one, if this contact has
    /// none); `ownOnly`: only those without an external id.
    [[nodiscard]] std::optional<Contact> findAlike(const Contact& contact, bool ownOnly);

    /// The own and the shared contacts, in the order of surname, first name and age.
    [[nodiscard]] std::vector<Contact> list(std::int64_t offset, std::int64_t limit);
    [[nodiscard]] std::int64_t count();

    /// The rules by which the index of numbers was computed; empty if they were never set.
    [[nodiscard]] std::string indexRules();
    /// Recomputes the index of all numbers.
    void reindex(const std::string& rules);

    /// The form of a number in the index.
    [[nodiscard]] std::string indexed(std::string number) const;
    /// The four numbers of a contact in the order of their positions; a missing one is empty.
    static std::array<std::string, 4> numbersOf(const Contact& contact);

private:
    using Numbers = std::array<std::string, 4>;

    void index(std::int64_t id, const Numbers& numbers);
    void insertNumbers(std::int64_t id, const Numbers& numbers);
    [[nodiscard]] static std::optional<Match> matchOf(Query& query);
    /// Reads the contact whose id is the next column.
    std::optional<Contact> contactNamedBy(Query& query);
    [[nodiscard]] static Contact contactFrom(Query& row);

    Database::Session& m_session;
    const std::string& m_line;
    DigitAnalysisServiceIfc* const m_digits;
};

}  // namespace host
