#include "host/csta/requests/PendingRequests.h"

#include <system_error>
#include <utility>
#include <vector>

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

PendingRequests::PendingRequests(asio::io_context& io, std::chrono::milliseconds timeout,
                                 std::function<void()> freed)
    : m_io(io), m_timeout(timeout), m_freed(std::move(freed)) {}

std::optional<int> PendingRequests::add(Owner owner, Handler handler) {
    const std::optional<int> id = m_ids.next([this](int taken) { return m_waiting.contains(taken); });
    if (!id) {
        return std::nullopt;
    }
    m_late.erase(*id);
    Waiting& waiting = m_waiting[*id];
    waiting.serial = ++m_lastSerial;
    waiting.owner = owner;
    waiting.handler = std::move(handler);
    waiting.timer = std::make_unique<asio::steady_timer>(m_io, m_timeout);
    waiting.timer->async_wait([this, invokeId = *id, serial = waiting.serial](std::error_code error) {
        if (error) {
            return;
        }
        const auto found = m_waiting.find(invokeId);
        if (found != m_waiting.end() && found->second.serial == serial) {
            m_late[invokeId] = found->second.owner;
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
    m_late.clear();
    m_ids = InvokeIds();
    for (auto& [id, waiting] : failed) {
        waiting.timer->cancel();
        waiting.handler({});
    }
}

void PendingRequests::failAll(Owner owner) {
    std::erase_if(m_late, [owner](const auto& late) { return late.second == owner; });
    std::vector<int> ids;
    for (const auto& [id, waiting] : m_waiting) {
        if (waiting.owner == owner) {
            ids.push_back(id);
        }
    }
    for (const int id : ids) {
        finish(id, {});
    }
}

PendingRequests::Owner PendingRequests::ownerOfLate(int invokeId) const {
    const auto found = m_late.find(invokeId);
    return found == m_late.end() ? nullptr : found->second;
}

void PendingRequests::finish(int invokeId, const SwitchResponse& response) {
    auto node = m_waiting.extract(invokeId);
    if (!node.empty()) {
        node.mapped().timer->cancel();
        node.mapped().handler(response);
        if (m_freed) {
            m_freed();
        }
    }
}

}  // namespace host
