#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"
#include "platform/journal-library/EntryList.h"
#include "platform/journal-library/XmlLimits.h"

/// Builders for the responses of the database. They accept any bytes and never throw.
namespace journalxml {

/// A list document under construction: entries of one kind for a table's own schema, of all kinds for a mixed
/// one. One thread at a time.
class ListDocument {
public:
    /// `maxBytes` bounds the finished document; readers refuse one that is longer than the default.
    explicit ListDocument(const std::string& schema, std::size_t maxBytes = kMaxDocumentBytes);

    /// Appends an entry. Returns false, with the document unchanged, if it would exceed the limit; the
    /// document is then full, and further calls return false, too. Add the newest entries first, so that the
    /// oldest are left out.
    [[nodiscard]] bool add(const MissedCallItem& item);
    [[nodiscard]] bool add(const DialledCallItem& item);
    [[nodiscard]] bool add(const ReceivedCallItem& item);
    [[nodiscard]] bool add(const ForwardedCallItem& item);
    [[nodiscard]] bool add(const CallBackItem& item);
    [[nodiscard]] bool add(const Contact& contact);

    /// The number of entries.
    [[nodiscard]] std::size_t size() const noexcept { return m_entries.size(); }
    /// The document so far; more may be added afterwards.
    [[nodiscard]] std::string text() const { return m_entries.text(); }

private:
    EntryList m_entries;
};

/// The response to a successful write, update or delete request. `lastUniqueId` is the id of the last row
/// that it changed; empty if there is none.
[[nodiscard]] std::string buildUpdateResponse(const std::string& schema,
                                              const std::string& lastUniqueId = {});

/// The response to a settings read: one field for each setting. Requires: keys are XML names.
[[nodiscard]] std::string buildSettingsResponse(
    const std::vector<std::pair<std::string, std::string>>& settings);

}  // namespace journalxml
