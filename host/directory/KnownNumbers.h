#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "journal-items/Contact.h"

namespace host {

/// The numbers that the contacts of a phonebook have, and the contacts that were looked up last, in memory,
/// so that most calls are looked up without the database. All numbers are in their indexed form.
///
/// Use it in this order: `find`; if the result is not known, `version`, read the database, `load` if it is
/// not loaded, and `store`. What was read before a change is then not stored after it.
///
/// Thread-safe. Memory: 8 bytes for each number of a contact, and at most 512 contacts.
class KnownNumbers {
public:
    /// Null if no contact has the number.
    using ContactPtr = std::shared_ptr<const Contact>;

    /// Returns std::nullopt if the database must be read.
    [[nodiscard]] std::optional<ContactPtr> find(const std::string& number);
    [[nodiscard]] std::uint64_t version();
    [[nodiscard]] bool isLoaded();

    /// Stores the numbers of all contacts, or the contact of one number, unless there was a change since
    /// `version`.
    void load(std::uint64_t version, const std::vector<std::string>& numbers);
    void store(std::uint64_t version, const std::string& number, ContactPtr contact);

    /// Call one of them after each change: contacts may have these numbers, too; forget all.
    void change(const std::vector<std::string>& added);
    void clear();

private:
    static constexpr std::size_t kMaxContacts = 512;

    static std::uint64_t hashOf(std::string_view number) { return std::hash<std::string_view>()(number); }
    void forgetContacts();

    std::mutex m_mutex;
    // Guarded by m_mutex.
    std::uint64_t m_version = 0;
    bool m_isLoaded = false;
    /// In order. A number without a contact may be here: it is then read.
    std::vector<std::uint64_t> m_hashes;
    std::unordered_map<std::string, ContactPtr> m_contacts;
};

}  // namespace host
