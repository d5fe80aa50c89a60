#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"
#include "journal-items/Contact.h"

namespace host {

class NumberTexts;
class Phonebook;
class Router;

/// The phonebook of the line: search, single contacts, import. A request that is about one line adds and
/// changes contacts of that line, any other one those that all lines share. Thread-safe.
class ContactsResource {
public:
    /// Both are borrowed and outlive the resource.
    ContactsResource(Phonebook& phonebook, NumberTexts& numbers)
        : m_phonebook(phonebook), m_numbers(numbers) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse list(const HttpRequest& request) const;
    /// The one contact that a call from the number takes its name from, or none.
    [[nodiscard]] HttpResponse findByNumber(const std::string& number) const;
    [[nodiscard]] HttpResponse contact(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse add(const HttpRequest& request);
    /// Fields that are missing in the body are unchanged.
    [[nodiscard]] HttpResponse change(const HttpRequest& request);
    [[nodiscard]] HttpResponse remove(const HttpRequest& request);
    /// Stores the contacts of the file in the body; the header Content-Type names its format, text/vcard or
    /// text/csv. The response is `importJson` with a bounded number of notes. Throws `HttpError`: 415 for
    /// another type, 422 for a body of another format, 503 when the database fails. Contacts stored before a
    /// failure remain, and a second import of the file stores the rest.
    [[nodiscard]] HttpResponse importFile(const HttpRequest& request);

    /// The contact of the id in the path. Throws `HttpError`: 404 for an unknown id, 503 when the database
    /// fails.
    [[nodiscard]] Contact requestedContact(const HttpRequest& request) const;

    /// Throws `HttpError` 403 if the request is about one line, and the contact is one of all.
    void refuseShared(const HttpRequest& request, const Contact& contact) const;
    /// The contacts with "shared". Throws `HttpError` 503.
    [[nodiscard]] nlohmann::ordered_json json(const std::vector<Contact>& contacts) const;
    [[nodiscard]] nlohmann::ordered_json json(const Contact& contact) const;

    Phonebook& m_phonebook;
    NumberTexts& m_numbers;
};

}  // namespace host
