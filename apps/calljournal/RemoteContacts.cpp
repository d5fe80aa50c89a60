#include "apps/calljournal/RemoteContacts.h"

#include <utility>

#include "host/remote/RemoteClient.h"

namespace calljournal {

bool RemoteContacts::store(host::ImportReport& report) {
    const auto batch = std::exchange(m_batch, journalxml::PhonebookImport());
    const auto imported = journalxml::parsePhonebookImported(m_client.call(batch.text()));
    if (!imported) {
        return false;
    }
    report.count(*imported);
    return true;
}

}  // namespace calljournal
