#pragma once

#include <functional>
#include <utility>

#include "host/http/ApproximateEndMarks.h"
#include "host/http/HttpRequest.h"
#include "host/http/HttpResponse.h"

class JournalServiceIfc;

namespace host {

class Router;

/// The five lists: read, search, delete, mark as viewed. Thread-safe.
class ListsResource {
public:
    /// The journal is borrowed and outlives the resource. `cleared` is called after a list was cleared,
    /// because the journal does not notify its observers of that for every list.
    ListsResource(JournalServiceIfc& journal, std::function<void()> cleared,
                  EndIsApproximate endIsApproximate = {})
        : m_journal(journal),
          m_cleared(std::move(cleared)),
          m_endIsApproximate(std::move(endIsApproximate)) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse list(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse entry(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse deleteOne(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse deleteSome(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse markViewed(const HttpRequest& request) const;

    JournalServiceIfc& m_journal;
    const std::function<void()> m_cleared;
    const EndIsApproximate m_endIsApproximate;
};

}  // namespace host
