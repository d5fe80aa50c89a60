#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "journal-items/Contact.h"
#include "platform/directory/DirectoryServiceIfc.h"
#include "platform/framework/Executable.h"

class DigitAnalysisServiceIfc;

namespace host {

class Database;

/// The phonebook of one line in the database, registered as "DirectoryServiceIfc".
///
/// A contact is found by any of its four numbers in any spelling: numbers are compared in the form that the dialling rules
/// give them, which is kept beside the contact in an index of its own. Where several contacts have a number, the one of
/// the best source wins (personal before company before the others), then the oldest.
///
/// The matched kind counts 1 second office, 2 office, 3 mobile, 4 private, the order in which the journal reads it.
///
/// Threads: any thread may call, at any time. Errors: a database that fails is logged there and answers here like a
/// contact that is not there; nothing throws.
class Phonebook final : public Executable, public DirectoryServiceIfc {
public:
    /// Both are borrowed and outlive the phonebook. `line` is the device whose contacts these are.
    Phonebook(Database& database, DigitAnalysisServiceIfc& digits, std::string line);

    /// Fills in everything but the search number and the call records, which stay as they are.
    [[nodiscard]] bool lookUpContact(Contact& contact) override;

    /// Stores a new contact and answers its unique id; the contact's own unique id, search number, matched kind and call
    /// records are not stored. Nothing when the database failed.
    [[nodiscard]] std::optional<std::string> add(const Contact& contact);
    /// The same for many in one transaction: all of them or none.
    [[nodiscard]] bool add(const std::vector<Contact>& contacts);
    /// Replaces the contact with that unique id; false when there is none.
    [[nodiscard]] bool update(const Contact& contact);
    /// False when there is none of that unique id.
    [[nodiscard]] bool remove(const std::string& uniqueId);

    [[nodiscard]] std::optional<Contact> find(const std::string& uniqueId);
    /// In the order of surname, first name and age, from the `offset`-th on.
    [[nodiscard]] std::vector<Contact> list(std::size_t offset, std::size_t limit);
    [[nodiscard]] std::size_t count();

    /// Computes the index of all numbers anew; needed after the dialling rules have changed.
    [[nodiscard]] bool reindex();

private:
    // Constant after construction.
    Database& m_database;
    DigitAnalysisServiceIfc& m_digits;
    const std::string m_line;
};

}  // namespace host
