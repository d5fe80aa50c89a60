#pragma once

#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

class Router;
class ServedLinesIfc;

/// The lines: list, add, remove. A token for one line sees that line only. Thread-safe.
class LinesResource {
public:
    /// Borrowed; outlives the resource.
    explicit LinesResource(ServedLinesIfc& lines) : m_lines(lines) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse list(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse line(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse add(const HttpRequest& request);
    [[nodiscard]] HttpResponse remove(const HttpRequest& request);

    ServedLinesIfc& m_lines;
};

}  // namespace host
