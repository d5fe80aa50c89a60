#include "host/http/ListsResource.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>

#include "host/history/StoredLists.h"
#include "host/http/HttpError.h"
#include "host/http/JsonBody.h"
#include "host/http/PageOfItems.h"
#include "host/http/Router.h"
#include "host/lists/ListOperations.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

ListName listOf(const HttpRequest& request) {
    const auto list = listNamed(request.parameter("list"));
    if (!list) {
        throw HttpError(404, "unknown-list", "the lists are missed, dialled, received, forwarded, callbacks");
    }
    return *list;
}

HttpError noSuchEntry() {
    return {404, "unknown-entry",
            "this list has no such entry; an entry gets a new id when a further call is added to it"};
}

/// Returns the ids that a deletion names; std::nullopt if it names all entries. Throws `HttpError` 400 unless
/// the request says it in exactly one way.
std::optional<std::set<std::string>> entriesToDelete(const HttpRequest& request) {
    const bool inQuery = request.query.contains("entryIds");
    const bool inBody = !request.body.empty();
    const bool all = request.query.contains("all");
    if ((inQuery ? 1 : 0) + (inBody ? 1 : 0) + (all ? 1 : 0) != 1 ||
        (all && request.queryValue("all") != "true")) {
        throw HttpError(400, "wrong-selection",
                        "a deletion takes either ?all=true, or ?entryIds=ID,ID, or the body "
                        R"({"entryIds": [...]})");
    }
    if (all) {
        return std::nullopt;
    }
    return inQuery ? entryIdsIn(request.queryValue("entryIds")) : entryIdsIn(request, 400);
}

}  // namespace

void ListsResource::addRoutes(Router& router) {
    router.add({"GET",
                "/api/v1/lists/{list}",
                [this](const HttpRequest& each) { return list(each); },
                {"limit", "offset", "search"}});
    router.add({"DELETE",
                "/api/v1/lists/{list}",
                [this](const HttpRequest& each) { return deleteSome(each); },
                {"all", "entryIds"}});
    router.add({"POST", "/api/v1/lists/missed/viewed",
                [this](const HttpRequest& each) { return markViewed(each); }});
    router.add(
        {"GET", "/api/v1/lists/{list}/{entryId}", [this](const HttpRequest& each) { return entry(each); }});
    router.add({"DELETE", "/api/v1/lists/{list}/{entryId}",
                [this](const HttpRequest& each) { return deleteOne(each); }});
}

HttpResponse ListsResource::list(const HttpRequest& request) const {
    const ListName name = listOf(request);
    const PageOfItems page(request);
    StoredLists::Page found =
        storedOr503(m_stored.page(name, request.queryValue("search"), page.offset(), page.limit()));
    return jsonResponse({{"list", std::string(wordOf(name))},
                         {"total", found.total},
                         {"unviewed", found.unviewed},
                         {"items", std::move(found.items)}});
}

HttpResponse ListsResource::entry(const HttpRequest& request) const {
    Json entry = storedOr503(m_stored.entry(listOf(request), request.parameter("entryId")));
    if (entry.is_null()) {
        throw noSuchEntry();
    }
    return jsonResponse(entry);
}

HttpResponse ListsResource::deleteOne(const HttpRequest& request) const {
    const bool deleted = withItemOf(listOf(request), [&]<typename Item>() {
        return deleteEntry<Item>(m_journal, request.parameter("entryId"));
    });
    if (!deleted) {
        throw noSuchEntry();
    }
    return emptyResponse();
}

HttpResponse ListsResource::deleteSome(const HttpRequest& request) const {
    withItemOf(listOf(request), [&]<typename Item>() {
        if (const auto entryIds = entriesToDelete(request)) {
            (m_journal.*listOperations<Item>().deleteSet)(*entryIds);
        } else {
            (m_journal.*listOperations<Item>().clear)();
            m_cleared();
        }
    });
    return emptyResponse();
}

HttpResponse ListsResource::markViewed(const HttpRequest& request) const {
    m_journal.setMissedCallListAsViewed(entryIdsIn(request));
    return emptyResponse();
}

}  // namespace host
