#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "journal-items/Contact.h"
#include "platform/journal-library/EntryList.h"

/// The vocabulary in which remote clients read the phonebook and import contacts. Every text, both ways. Pure functions;
/// any thread may call; nothing here throws on any bytes.
namespace journalxml {

/// The outermost element of every request for the phonebook, by which it is told from the journal's own requests.
inline constexpr const char* kPhonebookRequest = "PhonebookRequest";

struct PhonebookRequest {
    /// To import; empty: the request reads.
    std::vector<Contact> contacts;
    /// What is to be read: the contacts that are found by `search` (empty: all), from the `offset`-th on, at most
    /// `limit`.
    std::string search;
    std::size_t offset = 0;
    std::size_t limit = 0;
};

/// A request that reads. `contacts` is left out.
[[nodiscard]] std::string buildPhonebookRead(const PhonebookRequest& request);

/// A request that imports, in the making. One thread at a time.
class PhonebookImport {
public:
    PhonebookImport();

    /// False when the request would grow beyond the bound of requests: it is then full and left as it was.
    [[nodiscard]] bool add(const Contact& contact);
    [[nodiscard]] std::size_t size() const noexcept { return m_entries.size(); }
    [[nodiscard]] std::string text() const { return m_entries.text(); }

private:
    EntryList m_entries;
};

/// Nothing for a text that is beyond the bound of requests, cannot be read, or asks for nothing that there is.
[[nodiscard]] std::optional<PhonebookRequest> parsePhonebookRequest(std::string_view text);

/// What a read found: how many contacts there are to page through, and as many of the wanted ones as an answer can hold.
struct PhonebookPage {
    std::size_t total = 0;
    std::vector<Contact> contacts;
};
[[nodiscard]] std::string buildPhonebookPage(const PhonebookPage& page);
/// Nothing for a failure, and for any text that is no such answer; likewise below.
[[nodiscard]] std::optional<PhonebookPage> parsePhonebookPage(std::string_view text);

/// What an import did.
struct PhonebookImported {
    std::size_t added = 0;
    std::size_t changed = 0;
    std::size_t unchanged = 0;
};
[[nodiscard]] std::string buildPhonebookImported(const PhonebookImported& imported);
[[nodiscard]] std::optional<PhonebookImported> parsePhonebookImported(std::string_view text);

}  // namespace journalxml
