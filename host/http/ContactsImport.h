#pragma once

#include "host/http/HttpRequest.h"
#include "host/http/HttpResponse.h"

namespace host {

class Phonebook;

/// Takes the contacts of the file in the body into the phonebook; the header Content-Type says what it is, text/vcard or
/// text/csv. The answer is `importJson`, with a bounded number of notes.
///
/// Any thread may call. Throws `HttpError`: 415 for another type, 422 for a body that is nothing of the kind, 503 when the
/// database fails: what it took before that stays, and importing the file again takes the rest.
[[nodiscard]] HttpResponse importContacts(const HttpRequest& request, Phonebook& phonebook);

}  // namespace host
