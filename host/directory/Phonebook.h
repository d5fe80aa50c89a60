#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/database/Database.h"
#include "host/directory/KnownNumbers.h"
#include "journal-items/Contact.h"
#include "platform/directory/DirectoryServiceIfc.h"
#include "platform/framework/Executable.h"

class DigitAnalysisServiceIfc;

namespace host {

class ContactRows;

/// One page of the phonebook. A plain value.
struct ContactPage {
    /// The number of contacts in all pages.
    std::size_t total = 0;
    std::vector<Contact> contacts;
};

/// The result of an import. A plain value.
struct ImportCounts {
    std::size_t added = 0;
    std::size_t changed = 0;
    std::size_t unchanged = 0;
};

/// The phonebook of one line in the database, registered as "DirectoryServiceIfc": its own contacts, and the
/// contacts that all lines share, which a phonebook without a line has.
///
/// A contact is found by any spelling of its four numbers: numbers are compared in their normalised form,
/// which is stored in an index. If several contacts have a number, an own one wins, then the one of the best
/// source (personal before company before the others), then the oldest.
///
/// A look-up reads the database for a number that a contact has and that was not looked up before
/// (`KnownNumbers`); all others are looked up in memory. A change by another process applies within a second.
///
/// The matched kind of a found contact is a `Contact::MatchedKind`.
///
/// Thread-safe. Errors: no operation throws. A database that fails logs the error; the operation here then
/// returns the same as for a missing contact.
class Phonebook final : public Executable, public DirectoryServiceIfc {
public:
    /// The owner of a contact that is changed.
    enum class Owner {
        eLine,
        /// All lines; a change is made to an own contact, too.
        eAll,
    };

    /// Everything is borrowed and outlives the phonebook. `line` is the device that owns the contacts, empty
    /// for the shared ones; it has no other phonebook in this process. `shared` is the phonebook of the
    /// shared ones, null if there are none. Changes by other processes are looked for after `interval`.
    Phonebook(Database& database, DigitAnalysisServiceIfc& digits, std::string line,
              std::chrono::milliseconds interval = std::chrono::seconds(1), Phonebook* shared = nullptr);

    /// Sets a listener for changes of contacts, called on the thread that made the change. Call it before the
    /// first change.
    void setChangeListener(std::function<void()> listener) { m_changeListener = std::move(listener); }

    /// Fills in everything but the search number and the call records, which are kept.
    [[nodiscard]] bool lookUpContact(Contact& contact) override;

    /// Stores a new contact and returns its unique id; `std::nullopt` if the database failed. The contact's
    /// own unique id, search number, matched kind and call records are not stored.
    [[nodiscard]] std::optional<std::string> add(const Contact& contact, Owner owner = Owner::eLine);
    /// The same for many contacts in one transaction: all of them or none.
    [[nodiscard]] bool add(const std::vector<Contact>& contacts);
    /// Imports contacts from elsewhere: adds new ones, and changes known ones that differ, so that importing
    /// twice changes nothing. One transaction; `std::nullopt` if the database failed.
    ///
    /// A contact is known by its external id, and is then replaced as a whole. Without an external id, or
    /// with one that no contact here has, it is known by both names and its first number, and keeps the
    /// fields that the import does not set; a contact here with another external id does not match. An
    /// unknown source keeps the stored one; a new contact of unknown source becomes a personal one. For all
    /// lines, it is looked for among the own contacts, then among the shared ones.
    [[nodiscard]] std::optional<ImportCounts> import(const std::vector<Contact>& contacts,
                                                     Owner owner = Owner::eLine);
    /// Replaces the contact with that unique id; false if there is none of that owner.
    [[nodiscard]] bool update(const Contact& contact, Owner owner = Owner::eLine);
    /// Removes the contact with that unique id; false if there is none of that owner.
    [[nodiscard]] bool remove(const std::string& uniqueId, Owner owner = Owner::eLine);
    /// The unique ids of the shared ones among these contacts; `std::nullopt` if the database failed.
    [[nodiscard]] std::optional<std::set<std::string>> sharedAmong(const std::vector<Contact>& contacts);

    /// `contact` becomes `std::nullopt` if there is none. Returns false if the database fails.
    [[nodiscard]] bool find(const std::string& uniqueId, std::optional<Contact>& contact);
    /// As `lookUpContact`; `std::nullopt` if the database fails.
    [[nodiscard]] std::optional<bool> lookUp(Contact& contact);
    /// In the order of surname, first name and age, beginning with number `offset`.
    [[nodiscard]] std::vector<Contact> list(std::size_t offset, std::size_t limit);
    /// The same for the contacts that `itemMatches` finds by `text`; an empty text finds all. `std::nullopt`
    /// if the database failed.
    [[nodiscard]] std::optional<ContactPage> search(const std::string& text, std::size_t offset,
                                                    std::size_t limit);
    [[nodiscard]] std::size_t count();

    /// Recomputes the index of numbers if it was made by other rules than `rulesKey`, those by which `digits`
    /// normalises numbers (some seconds for 50,000 contacts). Call it before the first look-up. Returns
    /// false if the database failed.
    [[nodiscard]] bool reindexIfRulesChanged(const std::string& rulesKey);

private:
    using Clock = std::chrono::steady_clock;

    /// Notes a change of own contacts, and calls the listener. `changed` is the contact that is added or
    /// changed, null for several.
    void noteChange(const Contact* changed);
    /// Carries out a change in one transaction, and notes it.
    bool change(const char* what, const Contact* changed, const Database::Work& work);
    /// Forgets what is known if another process has changed the database.
    void noticeOtherProcesses();
    /// Reads the contact with a number in its indexed form. Returns false if the database failed.
    bool read(const std::string& number, KnownNumbers::ContactPtr& found);
    enum class Imported { eAdded, eChanged, eUnchanged };
    /// Looks in each of the places in turn; the last one gets a new contact.
    static Imported importOne(const std::vector<ContactRows*>& places, Contact contact);
    [[nodiscard]] std::optional<std::size_t> counted();
    [[nodiscard]] std::optional<std::vector<Contact>> slice(std::size_t offset, std::size_t limit);

    // Constant after construction.
    Database& m_database;
    DigitAnalysisServiceIfc& m_digits;
    const std::string m_line;
    const std::chrono::milliseconds m_interval;
    Phonebook* const m_shared;

    // Each is thread-safe.
    KnownNumbers m_known;
    std::atomic<Clock::time_point> m_nextNotice{};

    std::mutex m_stateMutex;
    // Guarded by m_stateMutex.
    DatabaseState m_state;

    // Constant from the first change on.
    std::function<void()> m_changeListener;
};

}  // namespace host
