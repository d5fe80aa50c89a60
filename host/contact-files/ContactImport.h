#pragma once

#include <cstddef>
#include <functional>

#include "host/contact-files/ContactReader.h"
#include "host/presentation/ImportReport.h"

namespace host {

/// The destination of an import: the phonebook, or the server that keeps it. One thread at a time.
class ContactStore {
public:
    ContactStore() = default;
    ContactStore(const ContactStore&) = delete;
    ContactStore& operator=(const ContactStore&) = delete;
    virtual ~ContactStore() = default;

    /// Adds a contact to the batch; false, with the batch unchanged, if the batch is full.
    [[nodiscard]] virtual bool add(const Contact& contact) = 0;
    /// Stores the batch, counts the result for its contacts in the report, and begins an empty batch. False
    /// if it could not be stored.
    [[nodiscard]] virtual bool store(ImportReport& report) = 0;
};

/// Imports the contacts of a file in batches. One thread.
class ContactImport {
public:
    /// Called after each batch.
    using Progress = std::function<void(const ImportReport&)>;

    /// The store is borrowed and outlives the import.
    ContactImport(ContactStore& store, Progress progress);

    /// Returns false if a batch could not be stored: the batches before it are stored, and the rest of the
    /// file was not read. Call it once.
    [[nodiscard]] bool run(ContactReader& reader);
    [[nodiscard]] const ImportReport& report() const noexcept { return m_report; }

private:
    [[nodiscard]] bool take(const ContactRecord& record);
    [[nodiscard]] bool store();

    ContactStore& m_store;
    const Progress m_progress;
    ImportReport m_report;
    /// The number of contacts in the batch.
    std::size_t m_pending = 0;
};

}  // namespace host
