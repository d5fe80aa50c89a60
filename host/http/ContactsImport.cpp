#include "host/http/ContactsImport.h"

#include <nlohmann/json.hpp>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "host/contact-files/ContactFormat.h"
#include "host/contact-files/ContactImport.h"
#include "host/contact-files/FileText.h"
#include "host/directory/Phonebook.h"
#include "host/http/HttpError.h"

namespace host {
namespace {

/// A body of nothing but refused contacts would make an answer many times its size.
constexpr std::size_t kMaxNotes = 1000;

class PhonebookStore final : public ContactStore {
public:
    explicit PhonebookStore(Phonebook& phonebook) : m_phonebook(phonebook) {}

    [[nodiscard]] bool add(const Contact& contact) override {
        m_batch.push_back(contact);
        return true;
    }

    [[nodiscard]] bool store(ImportReport& report) override {
        const auto imported = m_phonebook.import(std::exchange(m_batch, {}));
        if (!imported) {
            return false;
        }
        report.count(*imported);
        return true;
    }

private:
    Phonebook& m_phonebook;
    std::vector<Contact> m_batch;
};

ContactFormat formatOf(const HttpRequest& request) {
    const std::string_view header = request.header("content-type");
    const std::string type = lower(stripped(header.substr(0, header.find(';'))));
    if (type == "text/vcard") {
        return ContactFormat::eVCard;
    }
    if (type == "text/csv") {
        return ContactFormat::eCsv;
    }
    throw HttpError(415, "wrong-type", "contacts are imported with the Content-Type text/vcard or text/csv");
}

}  // namespace

HttpResponse importContacts(const HttpRequest& request, Phonebook& phonebook) {
    const ContactFormat format = formatOf(request);
    std::istringstream file(request.body);
    PhonebookStore store(phonebook);
    ContactImport import(store, [](const ImportReport& /*each*/) {});
    try {
        const auto reader = makeContactReader(file, format);
        if (format == ContactFormat::eVCard && upper(request.body).find("BEGIN:VCARD") == std::string::npos) {
            throw ContactFileError("no card begins in it");
        }
        if (!import.run(*reader)) {
            throw HttpError(
                503, "database",
                "the database does not answer; see the log. Importing the file again is harmless");
        }
    } catch (const ContactFileError& error) {
        throw HttpError(422, "wrong-file", std::string("this is no file of contacts: ") + error.what());
    }
    return jsonResponse(importJson(import.report(), kMaxNotes));
}

}  // namespace host
