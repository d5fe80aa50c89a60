#pragma once

#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"
#include "host/http/resources/PageCache.h"

namespace host {

class Router;
class StoredEntries;
class StoredLists;

/// The five lists: read, search, delete, mark as viewed. Thread-safe.
class ListsResource {
public:
    /// Both are borrowed and outlive the resource.
    ListsResource(const StoredLists& stored, StoredEntries& entries) : m_stored(stored), m_entries(entries) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse list(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse entry(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse deleteOne(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse deleteSome(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse markViewed(const HttpRequest& request, bool viewed) const;

    const StoredLists& m_stored;
    mutable PageCache m_pages;
    StoredEntries& m_entries;
};

}  // namespace host
