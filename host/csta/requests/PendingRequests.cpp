#include "host/csta/requests/PendingRequests.h"

#include <system_error>
#include <utility>

#include "host/csta-wire/CallControlWire.h"
#include "host/csta-wire/WireDocument.h"

namespace host {

namespace {

SwitchResponse readResponse(const WireDocument& document) {
    std::optional<CstaRefusal> refusal = readCstaRefusal(document);
    if (!refusal) {
        return {.kind = SwitchResponse::Kind::eResponse, .document = &document, .category = {}, .value = {}};
    }
    return {.kind = SwitchResponse::Kind::eRefused,
            .document = &document,
            .category = std::move(refusal->category),
            .value = std::move(refusal->value)};
}

}  // namespace

bool SwitchResponse::isNamed(const char* rootName) const {
    return kind == Kind::eResponse && document->name() == rootName;
}

PendingRequests::PendingRequests(asio::io_context& io, std::chrono::milliseconds timeout)
    : m_io(io), m_timeout(timeout) {}

std::optional<int> PendingRequests::add(Handler handler) {
    const std::optional<int> id = m_ids.next([this](int taken) { return m_waiting.contains(taken); });
    if (!id) {
        return std::nullopt;
    }
    Waiting& waiting = m_waiting[*id];
    waiting.serial = ++m_lastSerial;
    waiting.handler = std::move(handler);
    waiting.timer = std::make_unique<asio::steady_timer>(m_io, m_timeout);
    waiting.timer->async_wait([this, invokeId = *id, serial = waiting.serial](std::error_code error) {
        const auto found = m_waiting.find(invokeId);
        if (!error && found != m_waiting.end() && found->second.serial == serial) {
            finish(invokeId, {.kind = SwitchResponse::Kind::eTimedOut, .category = {}, .value = {}});
        }
    });
    return id;
}

bool PendingRequests::complete(int invokeId, const WireDocument& document) {
    if (!m_waiting.contains(invokeId)) {
        return false;
    }
    finish(invokeId, readResponse(document));
    return true;
}

void PendingRequests::failAll() {
    std::map<int, Waiting> failed = std::exchange(m_waiting, {});
    m_ids = InvokeIds();
    for (auto& [id, waiting] : failed) {
        waiting.timer->cancel();
        waiting.handler({});
    }
}

void PendingRequests::finish(int invokeId, const SwitchResponse& response) {
    auto node = m_waiting.extract(invokeId);
    if (!node.empty()) {
        node.mapped().timer->cancel();
        node.mapped().handler(response);
    }
}

}  // namespace host
