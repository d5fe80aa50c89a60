#pragma once

#include <functional>
#include <utility>

#include "host/http/HttpRequest.h"
#include "host/http/HttpResponse.h"

class JournalServiceIfc;

namespace host {

class Router;
class StoredLists;

/// The five lists: read, search, delete, mark as viewed. Thread-safe.
class ListsResource {
public:
    /// The journal and the stored lists are borrowed and outlive the resource. `cleared` is called after a list was cleared,
    /// because the journal does not notify its observers of that for every list.
    ListsResource(JournalServiceIfc& journal, const StoredLists& stored, std::function<void()> cleared)
        : m_journal(journal), m_stored(stored), m_cleared(std::move(cleared)) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse list(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse entry(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse deleteOne(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse deleteSome(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse markViewed(const HttpRequest& request) const;

    JournalServiceIfc& m_journal;
    const StoredLists& m_stored;
    const std::function<void()> m_cleared;
};

}  // namespace host
