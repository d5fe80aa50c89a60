#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "journal-items/Contact.h"
#include "platform/journal-library/EntryList.h"

/// The messages in which remote clients read the phonebook and import contacts, both ways. Pure functions;
/// any thread may call; no bytes make them throw.
namespace journalxml {

/// The outermost element of every phonebook request. It distinguishes them from the journal's own requests.
inline constexpr const char* kPhonebookRequest = "PhonebookRequest";

struct PhonebookRequest {
    /// The contacts to import; empty: the request reads.
    std::vector<Contact> contacts;
    /// The contacts to read: those that match `search` (empty: all), beginning with number `offset`, at most
    /// `limit`.
    std::string search;
    std::size_t offset = 0;
    std::size_t limit = 0;
};

/// Builds a request that reads; ignores `contacts`.
[[nodiscard]] std::string buildPhonebookRead(const PhonebookRequest& request);

/// Builds a request that imports. One thread at a time.
class PhonebookImport {
public:
    PhonebookImport();

    /// Returns false, with the request unchanged, if the request would exceed the limit for requests.
    [[nodiscard]] bool add(const Contact& contact);
    [[nodiscard]] std::size_t size() const noexcept { return m_entries.size(); }
    [[nodiscard]] std::string text() const { return m_entries.text(); }

private:
    EntryList m_entries;
};

/// Returns `std::nullopt` for a text that is too long, unreadable, or no valid request.
[[nodiscard]] std::optional<PhonebookRequest> parsePhonebookRequest(std::string_view text);

/// The result of a read: the number of matching contacts, and as many of the requested ones as a response can
/// hold.
struct PhonebookPage {
    std::size_t total = 0;
    std::vector<Contact> contacts;
};
[[nodiscard]] std::string buildPhonebookPage(const PhonebookPage& page);
/// Returns `std::nullopt` for a failure and for any text that is no such response; likewise below.
[[nodiscard]] std::optional<PhonebookPage> parsePhonebookPage(std::string_view text);

/// The result of an import.
struct PhonebookImported {
    std::size_t added = 0;
    std::size_t changed = 0;
    std::size_t unchanged = 0;
};
[[nodiscard]] std::string buildPhonebookImported(const PhonebookImported& imported);
[[nodiscard]] std::optional<PhonebookImported> parsePhonebookImported(std::string_view text);

}  // namespace journalxml
