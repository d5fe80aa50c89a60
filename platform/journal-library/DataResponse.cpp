#include "platform/journal-library/DataResponse.h"

#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/ItemWriter.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace journalxml {
namespace {

constexpr const char* kClosing = "</Schema>";

std::string openingFor(const std::string& schema) {
    std::string document = CallListDatabaseAdapterHelper::addXMLHeaderFooter({}, schema);
    document.resize(document.size() - std::string(kClosing).size());
    return document;
}

}  // namespace

ListDocument::ListDocument(const std::string& schema, std::size_t maxBytes)
    : m_entries(openingFor(schema), kClosing, maxBytes) {}

bool ListDocument::add(const MissedCallItem& item) {
    return m_entries.add(itemBody(item));
}

bool ListDocument::add(const DialledCallItem& item) {
    return m_entries.add(itemBody(item));
}

bool ListDocument::add(const ReceivedCallItem& item) {
    return m_entries.add(itemBody(item));
}

bool ListDocument::add(const ForwardedCallItem& item) {
    return m_entries.add(itemBody(item));
}

bool ListDocument::add(const CallBackItem& item) {
    return m_entries.add(itemBody(item));
}

bool ListDocument::add(const Contact& contact) {
    return m_entries.add(itemBody(contact));
}

std::string buildUpdateResponse(const std::string& schema, const std::string& lastUniqueId) {
    std::string body;
    if (!lastUniqueId.empty()) {
        appendField(body, CallListDatabaseAdapterHelper::LASTUNIQUEID, lastUniqueId);
    }
    return CallListDatabaseAdapterHelper::addXMLHeaderFooter(body, schema);
}

std::string buildSettingsResponse(const std::vector<std::pair<std::string, std::string>>& settings) {
    std::string body;
    for (const auto& [key, value] : settings) {
        appendField(body, key.c_str(), value);
    }
    return CallListDatabaseAdapterHelper::addXMLHeaderFooter(body, JournalServiceHelper::SETTINGS_SCHEMA);
}

}  // namespace journalxml
