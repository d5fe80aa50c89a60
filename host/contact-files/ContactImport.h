#pragma once

#include <cstddef>
#include <functional>

#include "host/contact-files/ContactReader.h"
#include "host/presentation/ImportReport.h"

namespace host {

/// Where an import puts contacts: the phonebook, or the server that keeps it. One thread at a time.
class ContactStore {
public:
    ContactStore() = default;
    ContactStore(const ContactStore&) = delete;
    ContactStore& operator=(const ContactStore&) = delete;
    virtual ~ContactStore() = default;

    /// Adds a contact to the batch; false, with the batch as it was, when it has no room for it.
    [[nodiscard]] virtual bool add(const Contact& contact) = 0;
    /// Stores the batch, counts in the report what became of its contacts, and begins an empty one. False when it could not
    /// be stored.
    [[nodiscard]] virtual bool store(ImportReport& report) = 0;
};

/// Takes the contacts of a file in, in batches. One thread.
class ContactImport {
public:
    /// Told after each batch.
    using Progress = std::function<void(const ImportReport&)>;

    /// The store is borrowed and outlives the import.
    ContactImport(ContactStore& store, Progress progress);

    /// False when a batch could not be stored: the ones before it are, and the rest was not read. Once.
    [[nodiscard]] bool run(ContactReader& reader);
    [[nodiscard]] const ImportReport& report() const noexcept { return m_report; }

private:
    [[nodiscard]] bool take(const ContactRecord& record);
    [[nodiscard]] bool store();

    ContactStore& m_store;
    const Progress m_progress;
    ImportReport m_report;
    /// How many contacts are in the batch.
    std::size_t m_pending = 0;
};

}  // namespace host
