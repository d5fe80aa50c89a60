#pragma once

#include <cstddef>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "host/contact-files/ContactImport.h"
#include "journal-items/Contact.h"

namespace host {
class ApiClient;
}

/// The phonebook of a running server. The functions throw what `ApiClient` throws.
namespace calljournal {

/// Passes the contacts that contain `search` (empty: all) to `visitor` as JSON, in the order of their names,
/// at most `limit`. Returns the number of contacts found.
std::size_t visitContacts(host::ApiClient& client, const std::string& search, std::size_t limit,
                          const std::function<void(const nlohmann::ordered_json&)>& visitor);

/// A contact of the API as an item. Pure.
[[nodiscard]] Contact contactFrom(const nlohmann::ordered_json& json);

/// The phonebook of a running server as the destination of an import. A batch is one request, a CSV file.
class ContactUpload final : public host::ContactStore {
public:
    /// The client is borrowed and outlives the store.
    explicit ContactUpload(host::ApiClient& client);

    [[nodiscard]] bool add(const Contact& contact) override;
    /// False if the server's database fails.
    [[nodiscard]] bool store(host::ImportReport& report) override;

private:
    host::ApiClient& m_client;
    const std::string m_head;
    std::string m_batch;
};

}  // namespace calljournal
