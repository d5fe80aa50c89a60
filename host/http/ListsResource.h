#pragma once

#include "host/http/HttpRequest.h"
#include "host/http/HttpResponse.h"

class JournalServiceIfc;

namespace host {

class Router;

/// The five lists: read, found, deleted, marked as viewed. Threads: any.
class ListsResource {
public:
    /// The journal is borrowed and outlives the resource.
    explicit ListsResource(JournalServiceIfc& journal) : m_journal(journal) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse list(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse entry(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse deleteEntry(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse deleteEntries(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse markViewed(const HttpRequest& request) const;

    JournalServiceIfc& m_journal;
};

}  // namespace host
