#pragma once

#include "host/contact-files/ContactImport.h"
#include "platform/journal-library/PhonebookMessage.h"

namespace host {
class RemoteClient;
}

namespace calljournal {

/// The phonebook of a running server, for an import. A batch is one request. `store` throws `RemoteError` when the server
/// does not answer. One thread.
class RemoteContacts final : public host::ContactStore {
public:
    /// The client is borrowed and outlives the store.
    explicit RemoteContacts(host::RemoteClient& client) : m_client(client) {}

    [[nodiscard]] bool add(const Contact& contact) override { return m_batch.add(contact); }
    [[nodiscard]] bool store(host::ImportReport& report) override;

private:
    host::RemoteClient& m_client;
    journalxml::PhonebookImport m_batch;
};

}  // namespace calljournal
