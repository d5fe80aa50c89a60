#pragma once

#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <utility>

#include "host/digits/NumberTexts.h"
#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"
#include "host/http/resources/StatusResource.h"

namespace host {

class CallControlIfc;
class Dialling;
class Phonebook;
class Router;
struct CallControlOutcome;
struct LiveCallView;

/// The live calls of the line: the list, and placing, answering and ending calls. Thread-safe.
class LiveCallsResource {
public:
    /// All are borrowed and outlive the resource.
    struct Sources {
        CallControlIfc& calls;
        const Dialling& dialling;
        Phonebook& phonebook;
        NumberTexts& numbers;
        std::function<LineState()> lineState;
    };

    explicit LiveCallsResource(Sources sources) : m_sources(std::move(sources)) {}

    void addRoutes(Router& router);

    /// {"calls": [...]}, as `GET /api/v1/live-calls` returns it.
    [[nodiscard]] nlohmann::ordered_json list(PlaceLanguage language) const;

private:
    [[nodiscard]] HttpResponse place(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse answerCall(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse hangUp(const HttpRequest& request) const;
    [[nodiscard]] nlohmann::ordered_json callJson(const LiveCallView& call) const;

    const Sources m_sources;
};

}  // namespace host
