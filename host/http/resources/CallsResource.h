#pragma once

#include <functional>

#include "host/history/CallHistory.h"
#include "host/history/Zone.h"
#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"
#include "host/stored-lists/CallDeletion.h"
#include "host/stored-lists/StoredEntries.h"

namespace host {

class NumberTexts;
class Router;

/// The calls of the history: pages by filters, single calls, deletion. Thread-safe.
class CallsResource {
public:
    /// `entries` is borrowed and outlives the resource.
    CallsResource(StoredEntries& entries, NumberTexts& numbers);

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse page(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse call(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse deleteOne(const HttpRequest& request);
    /// Throws `HttpError` 400 unless the request has either filters or all=true.
    [[nodiscard]] HttpResponse deleteSome(const HttpRequest& request);

    /// Lets all readers read again: the journal has notified its observers only of the calls that its entries
    /// had.
    void resync() const;

    NumberTexts& m_numbers;
    const std::function<void()> m_resync;
    const CallHistory m_history;
    CallDeletion m_deletion;
    const Zone m_zone = Zone::ofMachine();
};

}  // namespace host
