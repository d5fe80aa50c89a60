#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "host/contact-files/ContactReader.h"
#include "platform/journal-library/PhonebookMessage.h"

namespace host {

class RemoteClient;

/// What an import has done so far. A plain value.
struct ContactImportReport {
    /// Something that is not, or not wholly, in the phonebook now.
    struct Note {
        std::size_t line = 0;
        std::string text;
        /// Whether the contact as a whole was skipped.
        bool skipped = false;
    };

    /// Contacts of the file, skipped ones included.
    std::size_t read = 0;
    std::size_t skipped = 0;
    std::size_t added = 0;
    std::size_t changed = 0;
    std::size_t unchanged = 0;
    std::vector<Note> notes;
};

/// Takes contacts from a file to the phonebook of a running server, in batches. One thread.
class ContactImport {
public:
    /// Told after each batch.
    using Progress = std::function<void(const ContactImportReport&)>;

    /// The client is borrowed and outlives the import.
    ContactImport(RemoteClient& client, Progress progress);

    /// Throws `RemoteError` when the server fails; what was told before stays imported.
    ContactImportReport run(ContactReader& reader);

private:
    void take(const ContactRecord& record);
    void send();

    RemoteClient& m_client;
    const Progress m_progress;
    ContactImportReport m_report;
    journalxml::PhonebookImport m_batch;
};

}  // namespace host
