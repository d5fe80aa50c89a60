#include "host/http/resources/ContactsResource.h"

#include <algorithm>
#include <cstdint>
#include <istream>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <streambuf>
#include <string_view>
#include <utility>
#include <vector>

#include "host/contact-files/ContactFormat.h"
#include "host/contact-files/ContactImport.h"
#include "host/directory/Phonebook.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/JsonBody.h"
#include "host/http/messages/NumberFields.h"
#include "host/http/messages/PageOfItems.h"
#include "host/http/messages/Router.h"
#include "host/presentation/ContactFields.h"
#include "host/text-files/FileText.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

HttpError wrongContact(const std::string& why) {
    return {422, "wrong-contact", why};
}

HttpError databaseFailed() {
    return {503, "database", "the database does not respond; see the log"};
}

Phonebook::Owner ownerIn(const HttpRequest& request) {
    return request.isOfOneLine ? Phonebook::Owner::eLine : Phonebook::Owner::eAll;
}

/// Sets the fields of the contact that are in the body. Ignores those that are no fields of it, so that a
/// contact that was read can be sent back.
void applyFields(const Json& body, Contact& contact) {
    for (const auto& [name, value] : body.items()) {
        const auto& fields = contactFields();
        const auto field = std::find_if(fields.begin(), fields.end(),
                                        [&name = name](const auto& each) { return name == each.name; });
        if (name == "id" || name == "numberTexts" || name == "shared") {
            continue;
        }
        if (field == fields.end()) {
            throw wrongContact("a contact has no field " + name);
        }
        if (!value.is_string() || !field->set(contact, value.get<std::string>())) {
            throw wrongContact("this is no value for " + name);
        }
    }
    if (const std::optional<std::string> fault = tooLongField(contact)) {
        throw wrongContact(*fault);
    }
    std::string known = contact.getSurname() + contact.getFirstname() + contact.getCompany();
    for (int position = 1; position <= 4; ++position) {
        known += contact.getPhoneNumber(position);
    }
    if (stripped(known).empty()) {
        throw wrongContact("a contact needs a name, a company or a number");
    }
}

/// Limits the response: a body that contains only invalid contacts would cause a response many times its
/// size.
constexpr std::size_t kMaxNotes = 1000;

/// Some ten thousand cards with pictures, or many more without.
constexpr std::size_t kMaxFile = 16U * 1024U * 1024U;

/// Reads a text without copying it.
class TextBuffer : public std::streambuf {
public:
    explicit TextBuffer(const std::string& text) {
        char* const begin = const_cast<char*>(text.data());  // A get area is never written to.
        setg(begin, begin, begin + text.size());
    }
};

bool beginsACard(const std::string& file) {
    constexpr std::string_view kBegin = "BEGIN:VCARD";
    return std::search(file.begin(), file.end(), kBegin.begin(), kBegin.end(), [](char each, char expected) {
               return each == expected || (each >= 'a' && each <= 'z' && each - 32 == expected);
           }) != file.end();
}

class PhonebookStore final : public ContactStore {
public:
    PhonebookStore(Phonebook& phonebook, Phonebook::Owner owner) : m_phonebook(phonebook), m_owner(owner) {}

    [[nodiscard]] bool add(const Contact& contact) override {
        m_batch.push_back(contact);
        return true;
    }

    [[nodiscard]] bool store(ImportReport& report) override {
        const auto imported = m_phonebook.import(std::exchange(m_batch, {}), m_owner);
        if (!imported) {
            return false;
        }
        report.count(*imported);
        return true;
    }

private:
    Phonebook& m_phonebook;
    const Phonebook::Owner m_owner;
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

void ContactsResource::addRoutes(Router& router) {
    router.add({"GET",
                "/api/v1/contacts",
                Scope::eRead,
                [this](const HttpRequest& each) { return list(each); },
                {"limit", "offset", "search", "number"}});
    router.add(
        {"POST", "/api/v1/contacts", Scope::eWrite, [this](const HttpRequest& each) { return add(each); }});
    router.add({"POST",
                "/api/v1/contacts/import",
                Scope::eWrite,
                [this](const HttpRequest& each) { return importFile(each); },
                {},
                kMaxFile});
    router.add({"GET", "/api/v1/contacts/{id}", Scope::eRead,
                [this](const HttpRequest& each) { return contact(each); }});
    router.add({"PUT", "/api/v1/contacts/{id}", Scope::eWrite,
                [this](const HttpRequest& each) { return change(each); }});
    router.add({"DELETE", "/api/v1/contacts/{id}", Scope::eWrite,
                [this](const HttpRequest& each) { return remove(each); }});
}

HttpResponse ContactsResource::list(const HttpRequest& request) const {
    const std::string number = request.queryValue("number");
    if (!number.empty()) {
        return findByNumber(number);
    }
    constexpr std::size_t kAll = std::numeric_limits<std::int32_t>::max();
    const PageOfItems page(request);
    const auto found = m_phonebook.search(request.queryValue("search"), std::min(page.offset(), kAll),
                                          std::min(page.limit(), kAll));
    if (!found) {
        throw databaseFailed();
    }
    return jsonResponse({{"total", found->total}, {"contacts", json(found->contacts)}});
}

HttpResponse ContactsResource::findByNumber(const std::string& number) const {
    Contact contact;
    contact.setSearchNumber(number);
    std::vector<Contact> contacts;
    if (storedOr503(m_phonebook.lookUp(contact))) {
        contacts.push_back(std::move(contact));
    }
    return jsonResponse({{"total", contacts.size()}, {"contacts", json(contacts)}});
}

Json ContactsResource::json(const std::vector<Contact>& contacts) const {
    const std::set<std::string> shared = storedOr503(m_phonebook.sharedAmong(contacts));
    Json json = Json::array();
    for (const Contact& each : contacts) {
        json.push_back(contactJson(each, m_numbers));
        json.back()["shared"] = shared.contains(each.getUniqueId());
    }
    return json;
}

Json ContactsResource::json(const Contact& contact) const {
    return json(std::vector{contact}).front();
}

HttpResponse ContactsResource::contact(const HttpRequest& request) const {
    return jsonResponse(json(requestedContact(request)));
}

HttpResponse ContactsResource::add(const HttpRequest& request) {
    Contact contact;
    contact.setContactSource(Contact::eOrderedContactSource::ePersonal);
    applyFields(jsonObject(request), contact);
    const auto id = m_phonebook.add(contact, ownerIn(request));
    if (!id) {
        throw databaseFailed();
    }
    contact.setUniqueId(*id);
    HttpResponse response = jsonResponse(json(contact), 201);
    response.headers.emplace_back("Location", "/api/v1/contacts/" + *id);
    return response;
}

HttpResponse ContactsResource::change(const HttpRequest& request) {
    Contact contact = requestedContact(request);
    refuseShared(request, contact);
    applyFields(jsonObject(request), contact);
    if (!m_phonebook.update(contact, ownerIn(request))) {
        static_cast<void>(requestedContact(request));  // 404 if another client deleted it meanwhile
        throw databaseFailed();
    }
    return jsonResponse(json(contact));
}

HttpResponse ContactsResource::remove(const HttpRequest& request) {
    refuseShared(request, requestedContact(request));
    if (!m_phonebook.remove(request.parameter("id"), ownerIn(request))) {
        static_cast<void>(requestedContact(request));
        throw databaseFailed();
    }
    return emptyResponse();
}

HttpResponse ContactsResource::importFile(const HttpRequest& request) {
    const ContactFormat format = formatOf(request);
    TextBuffer buffer(request.body);
    std::istream file(&buffer);
    PhonebookStore store(m_phonebook, ownerIn(request));
    ContactImport import(store, [](const ImportReport& /*each*/) {});
    try {
        const auto reader = makeContactReader(file, format);
        if (format == ContactFormat::eVCard && !beginsACard(request.body)) {
            throw ContactFileError("no card begins in it");
        }
        if (!import.run(*reader)) {
            throw HttpError(
                503, "database",
                "the database does not respond; see the log. Importing the file again is harmless");
        }
    } catch (const ContactFileError& error) {
        throw HttpError(422, "wrong-file", std::string("this is no file of contacts: ") + error.what());
    }
    return jsonResponse(importJson(import.report(), kMaxNotes));
}

void ContactsResource::refuseShared(const HttpRequest& request, const Contact& contact) const {
    if (request.isOfOneLine && !storedOr503(m_phonebook.sharedAmong({contact})).empty()) {
        throw HttpError(
            403, "shared-contact",
            "all lines share this contact: change it without naming a line, with a token for all");
    }
}

Contact ContactsResource::requestedContact(const HttpRequest& request) const {
    std::optional<Contact> found;
    if (!m_phonebook.find(request.parameter("id"), found)) {
        throw databaseFailed();
    }
    if (!found) {
        throw HttpError(404, "unknown-contact", "there is no such contact");
    }
    return *found;
}

}  // namespace host
