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

/// What the database answers. Builders only; they never throw on any bytes.
namespace journalxml {

/// A list document in the making: entries of one kind for a table's own schema, of all kinds for a mixed
/// one. One thread at a time.
class ListDocument {
public:
    /// `maxBytes` bounds the finished document; readers refuse a longer one than the default.
    explicit ListDocument(const std::string& schema, std::size_t maxBytes = kMaxDocumentBytes);

    /// Adds an entry behind the earlier ones. False when the document would grow beyond its bound: it is
    /// then full, is left as it was, and further calls give false too. Add the newest entries first, so
    /// that the oldest are the ones left out.
    [[nodiscard]] bool add(const MissedCallItem& item);
    [[nodiscard]] bool add(const DialledCallItem& item);
    [[nodiscard]] bool add(const ReceivedCallItem& item);
    [[nodiscard]] bool add(const ForwardedCallItem& item);
    [[nodiscard]] bool add(const CallBackItem& item);
    [[nodiscard]] bool add(const Contact& contact);

    /// How many entries it holds.
    [[nodiscard]] std::size_t size() const noexcept { return m_entries.size(); }
    /// The document as it stands; more may be added afterwards.
    [[nodiscard]] std::string text() const { return m_entries.text(); }

private:
    EntryList m_entries;
};

/// The answer to a write, update or delete request that was done. `lastUniqueId` is the id of the last row
/// that it wrote or deleted; empty when it touched none.
[[nodiscard]] std::string buildUpdateResponse(const std::string& schema,
                                              const std::string& lastUniqueId = {});

/// The answer to a settings read: a field a setting. Keys must be XML names.
[[nodiscard]] std::string buildSettingsResponse(
    const std::vector<std::pair<std::string, std::string>>& settings);

}  // namespace journalxml
