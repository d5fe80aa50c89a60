#include "host/csta/call-control/PlacedCalls.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "host/csta-wire/DeviceText.h"
#include "host/csta-wire/EventSchemas.h"
#include "host/csta-wire/WireDocument.h"

namespace host {

namespace {

/// Fewer digits are not compared by their end: an extension is the end of many numbers.
constexpr std::size_t kLeastDigits = 6;

/// Without "+" and the zeros of international and national prefixes.
std::string significant(std::string_view text) {
    std::string number = comparableNumber(text);
    number.erase(0, number.find_first_not_of("+0"));
    return number;
}

}  // namespace

bool isSameDestination(std::string_view dialled, std::string_view inEvent) {
    const std::string one = comparableNumber(dialled);
    const std::string other = comparableNumber(inEvent);
    if (one.empty() || one == other) {
        return !one.empty();
    }
    std::string shorter = significant(dialled);
    std::string longer = significant(inEvent);
    if (shorter.size() > longer.size()) {
        std::swap(shorter, longer);
    }
    return shorter.size() >= kLeastDigits && longer.ends_with(shorter);
}

void PlacedCalls::begin(const std::string& id, const std::string& number, Complete complete) {
    m_calls.push_back({.id = id,
                       .number = number,
                       .since = std::chrono::system_clock::now(),
                       .complete = std::move(complete)});
}

std::string PlacedCalls::accepted(const std::string& id, const WireConnection& made) {
    const auto call = at(id);
    if (call == m_calls.end()) {
        return {};
    }
    if (!call->isIntroduced) {
        call->connection.deviceId = made.deviceId;
        if (!made.callId.empty()) {
            call->connection.callId = made.callId;
        }
    }
    const std::string wanted = call->isIntroduced ? std::string() : call->connection.callId;
    complete(call);
    return wanted;
}

bool PlacedCalls::acceptedByEvent(const std::string& id) {
    const auto call = at(id);
    if (call == m_calls.end()) {
        return true;
    }
    if (!call->isIntroduced && !call->isInitiated) {
        return false;
    }
    complete(call);
    return true;
}

void PlacedCalls::failed(const std::string& id, CallControlOutcome outcome) {
    const auto call = at(id);
    if (call == m_calls.end()) {
        return;
    }
    const Complete complete = std::exchange(call->complete, {});
    m_calls.erase(call);
    if (complete) {
        complete(std::move(outcome));
    }
}

void PlacedCalls::onEvent(const WireDocument& event, std::string_view ownDevice) {
    const EventSchema* const schema = m_calls.empty() ? nullptr : findEventSchema(event.name());
    if (schema == nullptr) {
        return;
    }
    const WireConnection connection = readConnection(childNamed(event.root(), schema->connection));
    if (connection.callId.empty()) {
        return;
    }
    if (schema->event == WireEvent::eServiceInitiated) {
        const bool isOwn = connection.deviceId.empty() ||
                           comparableNumber(connection.deviceId) == comparableNumber(ownDevice);
        const auto isOpen = [](const Call& call) {
            return !call.isIntroduced && call.connection.callId.empty();
        };
        const auto open = std::find_if(m_calls.begin(), m_calls.end(), isOpen);
        if (isOwn && std::count_if(m_calls.begin(), m_calls.end(), isOpen) == 1) {
            open->connection = connection;
            open->isInitiated = true;
        }
    } else if (schema->event == WireEvent::eConnectionCleared || schema->event == WireEvent::eFailed) {
        const auto ended = std::find_if(m_calls.begin(), m_calls.end(), [&connection](const Call& call) {
            return !call.isIntroduced && call.connection.callId == connection.callId;
        });
        if (ended != m_calls.end()) {
            ended->hasEnded = true;
            if (!ended->complete) {
                drop(ended);
            }
        }
    }
}

std::string PlacedCalls::introduced(const PhoneCall& call) {
    if (m_calls.empty() || !call.outgoing || call.device != CSTADevice::kLocalDevice) {
        return {};
    }
    if (std::string id = introduced(call.callId); !id.empty()) {
        return id;
    }
    const auto found = std::find_if(m_calls.begin(), m_calls.end(), [&call](const Call& placed) {
        return !placed.isIntroduced && placed.connection.callId.empty() && call.firstEvent >= placed.since &&
               isSameDestination(placed.number, call.called.number);
    });
    return found == m_calls.end() ? std::string() : introduce(found);
}

std::string PlacedCalls::introduced(std::string_view callId) {
    const auto found = std::find_if(m_calls.begin(), m_calls.end(), [callId](const Call& placed) {
        return !placed.isIntroduced && placed.connection.callId == callId;
    });
    return callId.empty() || found == m_calls.end() ? std::string() : introduce(found);
}

std::vector<LiveCallView> PlacedCalls::views(const std::string& ownDevice) const {
    std::vector<LiveCallView> views;
    for (const Call& call : m_calls) {
        if (!call.complete && !call.isIntroduced) {
            views.push_back({.id = call.id,
                             .switchCallId = call.connection.callId,
                             .state = LiveCallView::State::eCalling,
                             .outgoing = true,
                             .device = ownDevice,
                             .number = call.number,
                             .name = {},
                             .since = call.since});
        }
    }
    return views;
}

const WireConnection* PlacedCalls::find(std::string_view id) const {
    const auto found = std::find_if(m_calls.begin(), m_calls.end(), [id](const Call& call) {
        return call.id == id && !call.complete && !call.isIntroduced;
    });
    return found == m_calls.end() ? nullptr : &found->connection;
}

PlacedCalls::Calls::iterator PlacedCalls::at(std::string_view id) {
    return std::find_if(m_calls.begin(), m_calls.end(), [id](const Call& call) { return call.id == id; });
}

std::string PlacedCalls::introduce(Calls::iterator call) {
    std::string id = call->id;
    if (call->complete) {
        // The response may yet refuse the request: the user of the phone has dialled the number.
        call->isIntroduced = true;
        after(m_grace, *call, &PlacedCalls::complete);
    } else {
        m_calls.erase(call);
    }
    return id;
}

void PlacedCalls::complete(Calls::iterator call) {
    const Complete complete = std::exchange(call->complete, {});
    const CallControlOutcome done{.kind = CallControlOutcome::Kind::eDone, .callId = call->id};
    if (call->isIntroduced || call->hasEnded) {
        m_calls.erase(call);
    } else {
        after(kIntroduction, *call, &PlacedCalls::drop);
    }
    m_changed();
    if (complete) {
        complete(done);
    }
}

void PlacedCalls::after(std::chrono::milliseconds time, Call& call,
                        void (PlacedCalls::*action)(Calls::iterator)) {
    call.timer = std::make_unique<asio::steady_timer>(m_io, time);
    call.timer->async_wait([this, id = call.id, action](std::error_code error) {
        if (error) {
            return;
        }
        if (const auto found = at(id); found != m_calls.end()) {
            (this->*action)(found);
        }
    });
}

void PlacedCalls::drop(Calls::iterator call) {
    m_calls.erase(call);
    m_changed();
}

}  // namespace host
