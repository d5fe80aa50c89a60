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

class ContactRows;
class Database;

/// A part of the phonebook. A plain value.
struct ContactPage {
    /// How many contacts there are to page through.
    std::size_t total = 0;
    std::vector<Contact> contacts;
};

/// What an import did to the phonebook. A plain value.
struct ImportCounts {
    std::size_t added = 0;
    std::size_t changed = 0;
    std::size_t unchanged = 0;
};

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
    /// Takes contacts in from elsewhere: what is new is added, and what is known already is changed where it differs, so
    /// that importing twice changes nothing. In one transaction; nothing when the database failed.
    ///
    /// A contact is known by its external id, and is then replaced as a whole. If it has none, or none of ours has that id,
    /// it is known by both names and its first number, and keeps the fields that the import has nothing for; a contact of
    /// ours that goes by another external id is then somebody else. A source that is unknown stays what it was; a new contact
    /// is then a personal one.
    [[nodiscard]] std::optional<ImportCounts> import(const std::vector<Contact>& contacts);
    /// Replaces the contact with that unique id; false when there is none.
    [[nodiscard]] bool update(const Contact& contact);
    /// False when there is none of that unique id.
    [[nodiscard]] bool remove(const std::string& uniqueId);

    [[nodiscard]] std::optional<Contact> find(const std::string& uniqueId);
    /// In the order of surname, first name and age, from the `offset`-th on.
    [[nodiscard]] std::vector<Contact> list(std::size_t offset, std::size_t limit);
    /// The same of those that `itemMatches` finds by `text`; an empty text finds all. Nothing when the database failed.
    [[nodiscard]] std::optional<ContactPage> search(const std::string& text, std::size_t offset,
                                                    std::size_t limit);
    [[nodiscard]] std::size_t count();

    /// To be told by which rules `digits` brings numbers into form, before the first look-up: where the index of numbers was
    /// made by others, it is made anew (some seconds for 50,000 contacts). False when the database failed.
    [[nodiscard]] bool useRules(const std::string& rules);

private:
    enum class Imported { eAdded, eChanged, eUnchanged };
    static Imported importOne(ContactRows& rows, Contact contact);
    [[nodiscard]] std::optional<std::vector<Contact>> slice(std::size_t offset, std::size_t limit);

    // Constant after construction.
    Database& m_database;
    DigitAnalysisServiceIfc& m_digits;
    const std::string m_line;
};

}  // namespace host
