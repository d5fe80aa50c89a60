#include "host/http/resources/ListsResource.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>

#include "host/http/messages/HttpError.h"
#include "host/http/messages/JsonBody.h"
#include "host/http/messages/PageOfItems.h"
#include "host/http/messages/Router.h"
#include "host/stored-lists/StoredEntries.h"
#include "host/stored-lists/StoredLists.h"

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
                Scope::eRead,
                [this](const HttpRequest& each) { return list(each); },
                {"limit", "offset", "search"}});
    router.add({"DELETE",
                "/api/v1/lists/{list}",
                Scope::eWrite,
                [this](const HttpRequest& each) { return deleteSome(each); },
                {"all", "entryIds"}});
    router.add({"POST", "/api/v1/lists/missed/viewed", Scope::eWrite,
                [this](const HttpRequest& each) { return markViewed(each, true); }});
    router.add({"POST", "/api/v1/lists/missed/unviewed", Scope::eWrite,
                [this](const HttpRequest& each) { return markViewed(each, false); }});
    router.add({"GET", "/api/v1/lists/{list}/{entryId}", Scope::eRead,
                [this](const HttpRequest& each) { return entry(each); }});
    router.add({"DELETE", "/api/v1/lists/{list}/{entryId}", Scope::eWrite,
                [this](const HttpRequest& each) { return deleteOne(each); }});
}

HttpResponse ListsResource::list(const HttpRequest& request) const {
    const ListName name = listOf(request);
    const PageOfItems page(request);
    const std::string& search = request.queryValue("search");
    if (search.empty() && name != ListName::eCallbacks) {
        HttpResponse response;
        response.contentType = "application/json";
        response.body = storedOr503(m_stored.pageText(name, page.offset(), page.limit()));
        return response;
    }
    const std::string key = std::string(wordOf(name)) + ' ' + std::to_string(page.offset()) + ' ' +
                            std::to_string(page.limit()) + ' ' + search;
    HttpResponse response;
    if (m_pages.find(key, storedOr503(m_stored.state()), response.body)) {
        response.contentType = "application/json";
        return response;
    }
    StoredLists::Page found = storedOr503(m_stored.page(name, search, page.offset(), page.limit()));
    const auto state = found.state;
    response = jsonResponse({{"list", std::string(wordOf(name))},
                             {"total", found.total},
                             {"unviewed", found.unviewed},
                             {"items", std::move(found.items)}});
    if (state) {
        m_pages.store(key, *state, response.body);
    }
    return response;
}

HttpResponse ListsResource::entry(const HttpRequest& request) const {
    Json entry = storedOr503(m_stored.entry(listOf(request), request.parameter("entryId")));
    if (entry.is_null()) {
        throw noSuchEntry();
    }
    return jsonResponse(entry);
}

HttpResponse ListsResource::deleteOne(const HttpRequest& request) const {
    const std::string& id = request.parameter("entryId");
    if (changedOr503(m_entries.remove(listOf(request), {id})) == 0) {
        throw noSuchEntry();
    }
    return emptyResponse();
}

HttpResponse ListsResource::deleteSome(const HttpRequest& request) const {
    const ListName list = listOf(request);
    if (const auto entryIds = entriesToDelete(request)) {
        static_cast<void>(changedOr503(m_entries.remove(list, *entryIds)));
    } else {
        requireChanged(m_entries.clear(list));
    }
    return emptyResponse();
}

HttpResponse ListsResource::markViewed(const HttpRequest& request, bool viewed) const {
    requireChanged(m_entries.setViewed(entryIdsIn(request), viewed));
    return emptyResponse();
}

}  // namespace host
