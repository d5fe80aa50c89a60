#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/support/Property.h"
#include "fuzz/support/ScratchDatabase.h"
#include "host/access/AccessTokens.h"
#include "host/access/Tickets.h"
#include "host/digits/NumberTexts.h"
#include "host/directory/Phonebook.h"
#include "host/http/Authenticator.h"
#include "host/http/LinesResource.h"
#include "host/http/PageFiles.h"
#include "host/http/RequestPipeline.h"
#include "host/http/SessionRoutes.h"
#include "host/http/messages/HttpResponse.h"
#include "host/http/resources/CallsResource.h"
#include "host/http/resources/ContactsResource.h"
#include "host/http/resources/ImportResource.h"
#include "host/http/resources/ListsResource.h"
#include "host/http/resources/OpenApi.h"
#include "host/http/resources/PartiesResource.h"
#include "host/http/resources/SettingsResource.h"
#include "host/http/resources/StatisticsResource.h"
#include "host/http/resources/StatusResource.h"
#include "host/http/resources/TimesResource.h"
#include "host/http/resources/TokensResource.h"
#include "host/management/LocalManagement.h"
#include "host/stored-lists/StoredEntries.h"
#include "host/stored-lists/StoredLists.h"
#include "tests/support/FakeDigits.h"
#include "tests/support/FakeJournalService.h"
#include "tests/support/FakeLines.h"
#include "tests/support/StoredCalls.h"

// Feeds any bytes to the HTTP API as one request, without sockets: the text line "METHOD TARGET", header
// lines, an empty line, the body. "TICKET" in the target stands for a ticket of an earlier request. No
// request fails inside, none without the token gets data, none to another host is served, a GET writes no
// row, and every JSON body is JSON.

namespace {

using fuzz::require;

/// The resources of the API over a database, a fake journal and the token "secret".
class Api {
public:
    explicit Api(host::Database& database) : m_database(database) {
        m_authenticator.setListenAddress({"127.0.0.1", 8080});
        m_journal.setResponse(false);  // It has no entry loaded, so the rows are changed.
        m_lists.addRoutes(m_router);
        m_import.addRoutes(m_router);
        m_settings.addRoutes(m_router);
        m_contacts.addRoutes(m_router);
        m_times.addRoutes(m_router);
        m_calls.addRoutes(m_router);
        m_statistics.addRoutes(m_router);
        m_parties.addRoutes(m_router);
        m_status.addRoutes(m_router);
        m_tokensResource.addRoutes(m_common);
        m_linesResource.addRoutes(m_common);
        m_lines.set("2001", {&m_router, [](auto* /*routes*/) {}});
        m_lines.set("2002", {&m_router, [](auto* /*routes*/) {}});
        host::addSessionRoutes(m_authenticator, m_common);
        m_common.add({"POST", "/api/v1/tickets", host::Scope::eRead, [this](const host::HttpRequest& each) {
                          m_ticket = m_tickets.issue(each.access, host::Tickets::Clock::now());
                          return host::jsonResponse({{"ticket", m_ticket}}, 201);
                      }});
        m_router.add({"GET",
                      "/api/v1/events",
                      host::Scope::eRead,
                      [](const host::HttpRequest& /*each*/) { return host::HttpResponse(); },
                      {"ticket"}});
    }

    [[nodiscard]] host::HttpResponse handle(const host::HttpRequest& request) const {
        return m_pipeline.handle(request);
    }
    /// The ticket that was issued last and is not used yet; empty if there is none.
    [[nodiscard]] std::string takeTicket() { return std::exchange(m_ticket, {}); }
    /// Every journal call of the inputs is kept.
    [[nodiscard]] bool isFull() const { return m_journal.calls().size() > 10'000; }

private:
    host::Database& m_database;
    const std::string m_line = "2001";
    journaltest::FakeDigits m_digits;
    journaltest::FakeJournalService m_journal;
    host::NumberTexts m_numbers{"DE", m_digits};
    host::Phonebook m_phonebook{m_database, m_digits, "2001"};
    host::LocalManagement m_management{
        m_database, "2001", {}, {}, [](const std::function<void()>& /*work*/) {}};
    host::StoredLists m_stored{m_database, "2001", nullptr, &m_numbers};
    host::StoredEntries m_entries{{m_journal, m_database, "2001", &m_digits, [] {}}};
    host::ListsResource m_lists{m_stored, m_entries};
    host::ImportResource m_import{m_entries};
    host::SettingsResource m_settings{m_management, m_database, [] {}};
    host::ContactsResource m_contacts{m_phonebook, m_numbers};
    host::TimesResource m_times{{"2001", m_database}};
    host::CallsResource m_calls{m_entries, m_numbers};
    host::StatisticsResource m_statistics{m_database, "2001", &m_digits, m_numbers};
    host::PartiesResource m_parties{{m_database, m_line, &m_digits, m_phonebook, m_numbers}};
    host::StatusResource m_status{
        {"2001", [] { return host::LineState(); }, m_stored, m_management, m_database}};
    host::AccessTokens m_tokens{m_database};
    host::Tickets m_tickets;
    std::string m_ticket;
    journaltest::FakeLines m_lines;
    host::TokensResource m_tokensResource{m_tokens, [](const std::string& line) { return line == "2001"; }};
    host::LinesResource m_linesResource{m_lines};
    host::Router m_common;
    host::Router m_router;
    host::Authenticator m_authenticator{
        "secret", &m_tokens, &m_tickets, "https://phone.example/", {"https://board.example"}};
    host::PageFiles m_page{{}};
    host::RequestPipeline m_pipeline{m_authenticator, m_common, m_page, m_lines};
};

std::string_view takeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    return line;
}

host::HttpRequest requestIn(std::string_view text) {
    host::HttpRequest request;
    const std::string_view first = takeLine(text);
    const std::size_t blank = std::min(first.find(' '), first.size());
    request.method = first.substr(0, blank);
    request.target = first.substr(std::min(blank + 1, first.size()));
    for (std::string_view line = takeLine(text); !line.empty(); line = takeLine(text)) {
        const std::size_t colon = std::min(line.find(": "), line.size());
        std::string name(line.substr(0, colon));
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char each) { return std::tolower(each); });
        request.headers[name] = line.substr(std::min(colon + 2, line.size()));
    }
    request.body = text;
    return request;
}

void fill(host::Database& database) {
    for (int each = 0; each < 12; ++each) {
        journaltest::store(database, {.list = static_cast<ListName>(each % 4),
                                      .start = 1'795'238'525 - each * 3600,
                                      .number = std::to_string(4711 + each % 5),
                                      .name = each % 5 == 0 ? "M\xc3\xbcller" : "Ada \"Miller\"\n",
                                      .duration = each * 7,
                                      .unviewed = each % 4 == 0});
    }
}

bool hasToken(const host::HttpRequest& request) {
    const auto has = [&request](const char* header) {
        return request.header(header).find("secret") != std::string::npos;
    };
    return has("authorization") || has("cookie");
}

bool namesServedHost(const host::HttpRequest& request) {
    std::string host = request.header("host");
    std::transform(host.begin(), host.end(), host.begin(),
                   [](unsigned char each) { return std::tolower(each); });
    return host.starts_with("localhost") || host.starts_with("127.0.0.1") || host.starts_with("[") ||
           host.starts_with("phone.example");
}

void checkHeaders(const host::HttpResponse& response) {
    for (const auto& [name, value] : response.headers) {
        fuzz::requireOneLine(name, "the name of a header is not one line");
        fuzz::requireOneLine(value, "the value of a header is not one line");
    }
    fuzz::requireOneLine(response.contentType, "the type of a body is not one line");
}

void checkBody(const host::HttpResponse& response) {
    fuzz::requireUtf8(response.body, "a body is not UTF-8");
    if (response.contentType.starts_with("application/json")) {
        require(nlohmann::json::accept(response.body), "a body is no JSON");
    }
}

bool isHealth(host::HttpRequest request) {
    return request.readTarget() && request.path == std::vector<std::string>{"healthz"};
}

/// The journal that serves its settings is missing here.
bool isOfSettings(host::HttpRequest request, const host::HttpResponse& response) {
    return response.status == 503 && request.readTarget() && request.path.size() > 2 &&
           (request.path[2] == "settings" || request.path[2] == "management");
}

/// The end of a session, or its begin with the token in the body.
bool isSession(host::HttpRequest request) {
    if (!request.readTarget() || request.path != std::vector<std::string>{"api", "v1", "session"}) {
        return false;
    }
    const auto body = nlohmann::json::parse(request.body, nullptr, false);
    return request.method == "DELETE" ||
           (body.is_object() && body.contains("token") && body["token"] == "secret");
}

/// The page, the health check and sessions need no token in a header.
bool isOpen(host::HttpRequest request) {
    return isHealth(request) || isSession(request) || (request.readTarget() && request.path.empty());
}

/// The browser's question before a request of a page of another origin.
bool isPreflight(const host::HttpRequest& request) {
    return request.method == "OPTIONS" && request.header("origin") == "https://board.example";
}

/// Puts a ticket that was issued into the target. Returns true if there was one.
bool putTicket(host::HttpRequest& request, Api& api) {
    constexpr std::string_view kPlace = "TICKET";
    const std::size_t at = request.target.find(kPlace);
    const std::string ticket = at == std::string::npos ? std::string() : api.takeTicket();
    if (!ticket.empty()) {
        request.target.replace(at, kPlace.size(), ticket);
    }
    return !ticket.empty();
}

void checkAccess(const host::HttpRequest& request, bool hasTicket, const host::HttpResponse& response) {
    const bool isServed = response.status < 400;
    require(!isServed || namesServedHost(request), "a request to another host is served");
    require(!isServed || hasToken(request) || hasTicket || isOpen(request) || isPreflight(request) ||
                response.status == 303 || response.status == 302,
            "a request without the token is served");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::ScratchDatabase scratch(&fill);
    static std::unique_ptr<Api> api;
    if (api == nullptr || scratch.isChanged() || api->isFull()) {
        api.reset();
        api = std::make_unique<Api>(scratch.renew());
    }
    host::HttpRequest request = requestIn({reinterpret_cast<const char*>(data), size});
    const bool hasTicket = putTicket(request, *api);
    const host::HttpResponse response = api->handle(request);
    require(response.status >= 200 && (response.status < 500 || isOfSettings(request, response)),
            "a request fails inside");
    // The health check tries a write.
    require(request.method != "GET" || isHealth(request) || !scratch.isChanged(),
            "a GET changes the database");
    checkHeaders(response);
    checkBody(response);
    checkAccess(request, hasTicket, response);
    return 0;
}
