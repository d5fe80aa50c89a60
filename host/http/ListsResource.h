#pragma once

#include <functional>
#include <utility>

#include "host/http/HttpRequest.h"
#include "host/http/HttpResponse.h"

class JournalServiceIfc;

namespace host {

class Router;

/// The five lists: read, found, deleted, marked as viewed. Threads: any.
class ListsResource {
public:
    /// The journal is borrowed and outlives the resource. `emptied` is called when a list was, of which the journal does not
    /// tell its observers for every list.
    ListsResource(JournalServiceIfc& journal, std::function<void()> emptied)
        : m_journal(journal), m_emptied(std::move(emptied)) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse list(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse entry(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse deleteEntry(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse deleteEntries(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse markViewed(const HttpRequest& request) const;

    JournalServiceIfc& m_journal;
    const std::function<void()> m_emptied;
};

}  // namespace host
