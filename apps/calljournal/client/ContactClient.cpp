#include "apps/calljournal/client/ContactClient.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "apps/calljournal/output/JsonText.h"
#include "host/api-client/ApiClient.h"
#include "host/contact-files/ContactWriter.h"
#include "host/presentation/ContactFields.h"

namespace calljournal {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kPageSize = 1000;
/// The server refuses a body beyond 64 KiB.
constexpr std::size_t kMaxBody = 64 * 1024;

}  // namespace

std::size_t visitContacts(host::ApiClient& client, const std::string& search, std::size_t limit,
                          const std::function<void(const Json&)>& visitor) {
    for (std::size_t offset = 0;;) {
        host::ApiClient::Query query{{"offset", std::to_string(offset)},
                                     {"limit", std::to_string(std::min(kPageSize, limit - offset))}};
        if (!search.empty()) {
            query.emplace_back("search", search);
        }
        const Json page = client.get({"contacts"}, query);
        const Json& contacts = page["contacts"];
        std::for_each(contacts.begin(), contacts.end(), visitor);
        offset += contacts.size();
        const auto total = page["total"].get<std::size_t>();
        if (contacts.empty() || offset >= std::min(total, limit)) {
            return total;
        }
    }
}

Contact contactFrom(const Json& json) {
    Contact contact;
    contact.setUniqueId(textIn(json, "id"));
    for (const host::ContactField& field : host::contactFields()) {
        static_cast<void>(field.set(contact, textIn(json, field.name)));
    }
    return contact;
}

ContactUpload::ContactUpload(host::ApiClient& client)
    : m_client(client), m_head(host::contactFileHead(host::ContactFormat::eCsv)), m_batch(m_head) {}

bool ContactUpload::add(const Contact& contact) {
    const std::string row = host::contactFileEntry(host::ContactFormat::eCsv, contact);
    if (m_batch.size() + row.size() > kMaxBody) {
        return false;
    }
    m_batch += row;
    return true;
}

bool ContactUpload::store(host::ImportReport& report) {
    const std::string body = std::exchange(m_batch, m_head);
    Json counts;
    try {
        counts = m_client.post({"contacts", "import"}, body, "text/csv; charset=utf-8");
    } catch (const host::ApiError& error) {
        if (error.status() != 503) {
            throw;
        }
        return false;
    }
    report.added += counts.value("added", std::size_t{0});
    report.changed += counts.value("changed", std::size_t{0});
    report.unchanged += counts.value("unchanged", std::size_t{0});
    report.skipped += counts["skipped"].size();
    return true;
}

}  // namespace calljournal
