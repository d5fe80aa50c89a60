#include "platform/journal-library/PhonebookMessage.h"

#include <cstdint>

#include "platform/journal-library/ItemReader.h"
#include "platform/journal-library/ItemWriter.h"
#include "platform/journal-library/RootElements.h"
#include "platform/journal-library/XmlLimits.h"
#include "platform/journal-library/XmlMessage.h"
#include "platform/journal-library/XmlNames.h"

namespace journalxml {
namespace {

constexpr RootElement kRequest{"<PhonebookRequest>", "</PhonebookRequest>"};
constexpr RootElement kResponse{"<PhonebookResponse>", "</PhonebookResponse>"};
constexpr const char* kResponseName = "PhonebookResponse";

constexpr const char* kOperation = "Operation";
constexpr const char* kRead = "read";
constexpr const char* kImport = "import";
constexpr const char* kSearch = "Search";
constexpr const char* kOffset = "Offset";
constexpr const char* kRowLimit = "RowLimit";
constexpr const char* kTotal = "Total";
constexpr const char* kAdded = "Added";
constexpr const char* kChanged = "Changed";
constexpr const char* kUnchanged = "Unchanged";

std::string field(const char* name, const std::string& value) {
    std::string text;
    appendField(text, name, value);
    return text;
}

std::string field(const char* name, std::size_t value) {
    return field(name, std::to_string(value));
}

std::optional<std::size_t> sizeIn(const pugi::xml_node& parent, const char* name) {
    std::int32_t value = 0;
    return readNumber(textOfChild(parent, name), value) && value >= 0
               ? std::optional(static_cast<std::size_t>(value))
               : std::nullopt;
}

std::vector<Contact> contactsIn(const pugi::xml_node& parent) {
    std::vector<Contact> contacts;
    for (auto node = childNamed(parent, kEntry); node; node = nextNamed(node, kEntry)) {
        if (isEntryOf<Contact>(node)) {
            readItem(node, contacts.emplace_back());
        }
    }
    return contacts;
}

}  // namespace

std::string buildPhonebookRead(const PhonebookRequest& request) {
    return inRootElement(kRequest, field(kOperation, kRead) + field(kSearch, request.search) +
                                       field(kOffset, request.offset) + field(kRowLimit, request.limit));
}

PhonebookImport::PhonebookImport()
    : m_entries(opening(kRequest) + field(kOperation, kImport), kRequest.closing, kMaxMessageBytes) {}

bool PhonebookImport::add(const Contact& contact) {
    return m_entries.add(itemBody(contact));
}

std::optional<PhonebookRequest> parsePhonebookRequest(std::string_view text) {
    XmlMessage message;
    if (!message.parse(text, kMaxMessageBytes) || !isNamed(message.root(), kPhonebookRequest)) {
        return std::nullopt;
    }
    const std::string operation = textOfChild(message.root(), kOperation);
    PhonebookRequest request;
    if (operation == kImport) {
        request.contacts = contactsIn(message.root());
        return request.contacts.empty() ? std::nullopt : std::optional(std::move(request));
    }
    const std::optional<std::size_t> limit = sizeIn(message.root(), kRowLimit);
    if (operation != kRead || !limit) {
        return std::nullopt;
    }
    request.search = textOfChild(message.root(), kSearch);
    request.offset = sizeIn(message.root(), kOffset).value_or(0);
    request.limit = *limit;
    return request;
}

std::string buildPhonebookPage(const PhonebookPage& page) {
    EntryList entries(opening(kResponse) + field(kTotal, page.total), kResponse.closing, kMaxDocumentBytes);
    for (const Contact& contact : page.contacts) {
        if (!entries.add(itemBody(contact))) {
            break;
        }
    }
    return entries.text();
}

std::optional<PhonebookPage> parsePhonebookPage(std::string_view text) {
    XmlMessage message;
    if (!message.parse(text) || !isNamed(message.root(), kResponseName)) {
        return std::nullopt;
    }
    const std::optional<std::size_t> total = sizeIn(message.root(), kTotal);
    return total ? std::optional(PhonebookPage{*total, contactsIn(message.root())}) : std::nullopt;
}

std::string buildPhonebookImported(const PhonebookImported& imported) {
    return inRootElement(kResponse, field(kAdded, imported.added) + field(kChanged, imported.changed) +
                                        field(kUnchanged, imported.unchanged));
}

std::optional<PhonebookImported> parsePhonebookImported(std::string_view text) {
    XmlMessage message;
    if (!message.parse(text) || !isNamed(message.root(), kResponseName)) {
        return std::nullopt;
    }
    const auto added = sizeIn(message.root(), kAdded);
    const auto changed = sizeIn(message.root(), kChanged);
    const auto unchanged = sizeIn(message.root(), kUnchanged);
    return added && changed && unchanged ? std::optional(PhonebookImported{*added, *changed, *unchanged})
                                         : std::nullopt;
}

}  // namespace journalxml
