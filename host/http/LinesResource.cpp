#include "host/http/LinesResource.h"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/http/ServedLinesIfc.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/JsonBody.h"
#include "host/http/messages/PageOfItems.h"
#include "host/http/messages/Router.h"
#include "host/limits/TextLimits.h"
#include "host/limits/UnsafeCharacters.h"
#include "host/search/SearchText.h"
#include "platform/client-utils/Utf8.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;
using Outcome = ServedLinesIfc::Outcome;

Json lineJson(const LineSummary& line) {
    return {{"device", line.device},         {"name", line.name},
            {"switch", line.switchName},     {"configured", line.isConfigured},
            {"connected", line.isConnected}, {"monitoring", line.isMonitored},
            {"removed", line.isRemoved},     {"unviewed", line.unviewed}};
}

bool isPrintable(const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        const utf8::Step step = utf8::next(text, at);
        if (isUnsafeToPrint(step.character)) {
            return false;
        }
        at += step.length;
    }
    return true;
}

/// A member of the body that may be missing.
std::string textIn(const Json& body, const char* name, std::size_t mostBytes) {
    const auto found = body.find(name);
    if (found == body.end() || found->is_null()) {
        return {};
    }
    if (!found->is_string()) {
        throw HttpError(422, "wrong-shape", std::string(name) + " must be a text");
    }
    auto text = found->get<std::string>();
    if (text.size() > mostBytes) {
        throw HttpError(422, "wrong-shape", limits::tooLong(name, mostBytes));
    }
    if (!isPrintable(text)) {
        throw HttpError(422, "wrong-shape", std::string(name) + " must be one line of text");
    }
    return text;
}

bool flag(const HttpRequest& request, const char* name) {
    const std::string& text = request.queryValue(name);
    if (!text.empty() && text != "true" && text != "false") {
        throw HttpError(400, "bad-parameter", std::string(name) + " must be true or false");
    }
    return text == "true";
}

void requireDone(Outcome outcome) {
    switch (outcome) {
        case Outcome::eDone: return;
        case Outcome::eExists:
            throw HttpError(409, "line-exists", "there is a line with this device already");
        case Outcome::eUnknown: throw HttpError(404, "unknown-line", "there is no such line");
        case Outcome::eConfigured:
            throw HttpError(409, "configured-line",
                            "this line is in the configuration; remove it there and restart the service");
        case Outcome::eUnknownSwitch:
            throw HttpError(422, "unknown-switch", "the configuration has no switch of this name");
        case Outcome::eFailed: doneOr503(false);
    }
}

}  // namespace

void LinesResource::addRoutes(Router& router) {
    router.add({.method = "GET",
                .pattern = "/api/v1/lines",
                .scope = Scope::eRead,
                .handler = [this](const HttpRequest& each) { return list(each); },
                .queryParameters = {"all", "limit", "offset", "search"}});
    router.add({.method = "POST",
                .pattern = "/api/v1/lines",
                .scope = Scope::eAdmin,
                .handler = [this](const HttpRequest& each) { return add(each); },
                .isOfAllLines = true});
    router.add({.method = "GET",
                .pattern = "/api/v1/lines/{device}",
                .scope = Scope::eRead,
                .handler = [this](const HttpRequest& each) { return line(each); }});
    router.add({.method = "DELETE",
                .pattern = "/api/v1/lines/{device}",
                .scope = Scope::eAdmin,
                .handler = [this](const HttpRequest& each) { return remove(each); },
                .queryParameters = {"purge"},
                .isOfAllLines = true});
}

HttpResponse LinesResource::list(const HttpRequest& request) const {
    const bool all = flag(request, "all");
    if (all && !(request.access.scope == Scope::eAdmin && request.access.line.empty())) {
        throw HttpError(403, "wrong-scope", "lines that were removed are shown to the scope admin only");
    }
    const PageOfItems page(request);
    std::vector<LineSummary> lines = storedOr503(m_lines.list(all));
    const SearchText search(request.queryValue("search"));
    std::erase_if(lines, [&](const LineSummary& each) {
        const bool isVisible = request.access.line.empty() || request.access.line == each.device;
        return !isVisible || (!search.isEmpty() && !search.isIn(each.device) && !search.isIn(each.name));
    });
    Json shown = Json::array();
    const std::size_t begin = std::min(page.offset(), lines.size());
    const std::size_t end = begin + std::min(page.limit(), lines.size() - begin);
    for (std::size_t at = begin; at < end; ++at) {
        shown.push_back(lineJson(lines[at]));
    }
    return jsonResponse({{"first", request.access.line.empty() ? m_lines.first() : request.access.line},
                         {"total", lines.size()},
                         {"lines", std::move(shown)}});
}

HttpResponse LinesResource::line(const HttpRequest& request) const {
    const std::string& device = request.parameter("device");
    if (request.access.line.empty() || request.access.line == device) {
        const std::vector<LineSummary> lines = storedOr503(m_lines.list(false));
        const auto found = std::find_if(lines.begin(), lines.end(),
                                        [&device](const LineSummary& each) { return each.device == device; });
        if (found != lines.end()) {
            return jsonResponse(lineJson(*found));
        }
    }
    requireDone(Outcome::eUnknown);
    return {};
}

HttpResponse LinesResource::add(const HttpRequest& request) {
    const Json body = jsonObject(request);
    for (const auto& [name, value] : body.items()) {
        if (name != "device" && name != "name" && name != "switch") {
            throw HttpError(422, "wrong-shape", "a line has device, name and switch, not " + name);
        }
    }
    const std::string device = textIn(body, "device", limits::kNumberBytes);
    if (device.empty() || device.find('/') != std::string::npos) {
        throw HttpError(422, "wrong-shape",
                        "device must be the number of the line at its switch, such as \"2001\"");
    }
    requireDone(m_lines.add(device, textIn(body, "name", limits::kNameBytes),
                            textIn(body, "switch", limits::kNameBytes)));
    const std::vector<LineSummary> lines = storedOr503(m_lines.list(false));
    const auto added = std::find_if(lines.begin(), lines.end(),
                                    [&device](const LineSummary& each) { return each.device == device; });
    // Between, it may have been removed again.
    HttpResponse response =
        jsonResponse(lineJson(added == lines.end() ? LineSummary{.device = device} : *added), 201);
    response.headers.emplace_back("Location", "/api/v1/lines/" + percentEncoded(device));
    return response;
}

HttpResponse LinesResource::remove(const HttpRequest& request) {
    requireDone(m_lines.remove(request.parameter("device"), flag(request, "purge")));
    return emptyResponse();
}

}  // namespace host
