#include "host/csta/call-control/CallControl.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>

#include "host/csta-wire/NameSpaces.h"
#include "host/csta-wire/WireDocument.h"
#include "host/csta/requests/LinkLog.h"

namespace host {

namespace {

using Service = CallControlService;

std::string prefixOfThisRun() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    char digits[20];
    const auto end = std::to_chars(std::begin(digits), std::end(digits),
                                   std::chrono::duration_cast<std::chrono::milliseconds>(now).count(), 36);
    return std::string(digits, end.ptr) + "-";
}

std::string wordsOf(const SwitchResponse& refusal) {
    if (refusal.category.empty() || refusal.value.empty()) {
        return refusal.category.empty() && refusal.value.empty() ? "no reason given"
                                                                 : refusal.category + refusal.value;
    }
    return refusal.category + "/" + refusal.value;
}

bool isOutOfService(const SwitchResponse& refusal) {
    return refusal.value == "deviceOutOfService" || refusal.value == "networkOutOfService";
}

CallControlOutcome notPossible(const char* reason) {
    return {.kind = CallControlOutcome::Kind::eNotPossible, .reason = reason};
}

LiveCallView::State stateOf(const PhoneCall& call) {
    if (call.established) {
        return call.held ? LiveCallView::State::eHeld : LiveCallView::State::eConnected;
    }
    if (call.outgoing) {
        return LiveCallView::State::eCalling;
    }
    return call.offered ? LiveCallView::State::eOffered : LiveCallView::State::eRinging;
}

/// Another phone has established the call, so this one only waits for its end.
bool isOver(const PhoneCall& call) {
    return call.elsewhere && !call.established;
}

}  // namespace

CallControl::CallControl(Settings settings, asio::io_context& io, RequestChannel& channel, PhoneCalls& calls,
                         Handlers handlers)
    : m_settings(std::move(settings)),
      m_nameSpace(cstaNameSpace(m_settings.edition)),
      m_channel(channel),
      m_calls(calls),
      m_handlers(std::move(handlers)),
      m_idPrefix(prefixOfThisRun()),
      m_placed(io, m_settings.requestTimeout / 5, m_handlers.callsChanged) {
    m_calls.addListener({.changed = [this](const PhoneCall& call) { callChanged(call); },
                         .ended = [this](const PhoneCall& call) { callEnded(call); }});
}

// ---- requests

void CallControl::makeCall(const std::string& number, Complete complete) {
    if (CallControlOutcome checked = precheck(Service::eMakeCall); checked.kind != Kind::eDone) {
        complete(std::move(checked));
        return;
    }
    const std::string id = newId();
    m_placed.begin(id, number, std::move(complete));
    m_channel.send(
        writeCallControlRequest(
            {.service = Service::eMakeCall, .callingDevice = m_settings.ownDevice, .calledNumber = number},
            m_nameSpace),
        [this, id](const SwitchResponse& response) { onMade(id, response); });
}

void CallControl::onMade(const std::string& id, const SwitchResponse& response) {
    const auto made = response.kind == SwitchResponse::Kind::eResponse
                          ? readCallControlResponse(Service::eMakeCall, *response.document)
                          : std::nullopt;
    if (made) {
        const std::string callId = m_placed.accepted(id, *made);
        const PhoneCall* const known = m_calls.find(CSTADevice::kLocalDevice, callId);
        if (known != nullptr && !m_placed.introduced(callId).empty()) {
            m_ids[{known->device, known->callId}] = id;
            m_handlers.callsChanged();
        }
        return;
    }
    const bool isSilent =
        response.kind == SwitchResponse::Kind::eTimedOut || response.kind == SwitchResponse::Kind::eLost;
    if (!isSilent || !m_placed.acceptedByEvent(id)) {
        m_placed.failed(id, failure(Service::eMakeCall, response));
    }
}

void CallControl::answerCall(const std::string& id, const Complete& complete) {
    const PhoneCall* const call = callOf(id);
    if (call == nullptr) {
        complete(m_placed.find(id) == nullptr ? CallControlOutcome{.kind = Kind::eUnknownCall}
                                              : notPossible("the call was placed here"));
        return;
    }
    if (stateOf(*call) != LiveCallView::State::eRinging) {
        complete(notPossible("the call does not ring here"));
        return;
    }
    request(Service::eAnswerCall, id, connectionOf(*call), complete);
}

void CallControl::clearCall(const std::string& id, const Complete& complete) {
    if (const PhoneCall* const call = callOf(id)) {
        request(Service::eClearConnection, id, connectionOf(*call), complete);
        return;
    }
    const WireConnection* const placed = m_placed.find(id);
    if (placed == nullptr) {
        complete({.kind = Kind::eUnknownCall});
    } else if (placed->callId.empty()) {
        complete(notPossible("the switch has not named the call yet"));
    } else {
        WireConnection connection = *placed;
        if (connection.deviceId.empty()) {
            connection.deviceId = m_settings.ownDevice;
        }
        request(Service::eClearConnection, id, connection, complete);
    }
}

void CallControl::request(CallControlService service, const std::string& id, const WireConnection& connection,
                          const Complete& complete) {
    if (CallControlOutcome checked = precheck(service); checked.kind != Kind::eDone) {
        complete(std::move(checked));
        return;
    }
    const unsigned long serial = ++m_lastSerial;
    m_waiting.push_back({.serial = serial, .service = service, .id = id, .complete = complete});
    m_channel.send(
        writeCallControlRequest({.service = service, .connection = connection}, m_nameSpace),
        [this, serial, service](const SwitchResponse& response) { onResponse(serial, service, response); });
}

void CallControl::onResponse(unsigned long serial, CallControlService service,
                             const SwitchResponse& response) {
    const bool isWaiting = std::any_of(m_waiting.begin(), m_waiting.end(),
                                       [serial](const Waiting& each) { return each.serial == serial; });
    if (!isWaiting) {
        return;  // an event has completed it
    }
    const bool isDone = response.kind == SwitchResponse::Kind::eResponse &&
                        readCallControlResponse(service, *response.document).has_value();
    finish(serial, isDone ? CallControlOutcome{.kind = Kind::eDone} : failure(service, response));
}

void CallControl::finish(unsigned long serial, CallControlOutcome outcome) {
    const auto found = std::find_if(m_waiting.begin(), m_waiting.end(),
                                    [serial](const Waiting& each) { return each.serial == serial; });
    if (found != m_waiting.end()) {
        const Complete complete = std::move(found->complete);
        m_waiting.erase(found);
        complete(std::move(outcome));
    }
}

CallControlOutcome CallControl::failure(CallControlService service, const SwitchResponse& response) {
    switch (response.kind) {
        case SwitchResponse::Kind::eRefused:
            if (CstaRefusal{response.category, response.value}.isNotSupported()) {
                setLacking(service, true);
                return {.kind = Kind::eNotSupported};
            }
            return {.kind = isOutOfService(response) ? Kind::eOutOfService : Kind::eRefused,
                    .reason = wordsOf(response)};
        case SwitchResponse::Kind::eTimedOut: setLacking(service, true); return {.kind = Kind::eNotSupported};
        case SwitchResponse::Kind::eResponse:
            return {.kind = Kind::eRefused,
                    .reason = "it responds with " + std::string(response.document->name())};
        case SwitchResponse::Kind::eLost: break;
    }
    return {.kind = Kind::eNotConnected};
}

CallControlOutcome CallControl::precheck(CallControlService service) const {
    if (!m_channel.isReady()) {
        return {.kind = Kind::eNotConnected};
    }
    return {.kind = m_lacking.contains(service) ? Kind::eNotSupported : Kind::eDone};
}

void CallControl::setLacking(CallControlService service, bool lacking) {
    const bool isNew = lacking ? m_lacking.insert(service).second : m_lacking.erase(service) > 0;
    if (isNew) {
        CSTA_LINK_LOG(3, "the switch %s %s", lacking ? "does not have the service" : "has the service",
                      std::string(nameOf(service)).c_str());
        m_handlers.statusChanged();
    }
}

bool CallControl::isAvailable() const {
    return precheck(Service::eMakeCall).kind == Kind::eDone;
}

// ---- what happens on the link

void CallControl::onEvent(const WireDocument& event) {
    m_placed.onEvent(event, m_settings.ownDevice);
    for (const Waiting& each : std::list<Waiting>(m_waiting)) {
        if (m_placed.find(each.id) == nullptr && callOf(each.id) == nullptr) {
            completeFor(each.id, false, true);
        }
    }
}

void CallControl::onLateResponse(const WireDocument& response) {
    for (const Service service : {Service::eMakeCall, Service::eAnswerCall, Service::eClearConnection}) {
        if (readCallControlResponse(service, response)) {
            setLacking(service, false);
        }
    }
}

void CallControl::connectionLost() {
    m_lacking.clear();
}

void CallControl::close() {
    m_placed.clear();
}

void CallControl::callChanged(const PhoneCall& call) {
    if (!m_placed.empty() && !m_ids.contains({call.device, call.callId})) {
        if (std::string id = m_placed.introduced(call); !id.empty()) {
            m_ids.emplace(Key{call.device, call.callId}, std::move(id));
        }
    }
    if (!m_waiting.empty()) {
        if (const auto id = m_ids.find({call.device, call.callId}); id != m_ids.end()) {
            completeFor(std::string(id->second), call.established.has_value(), false);
        }
    }
    m_handlers.callsChanged();
}

void CallControl::callEnded(const PhoneCall& call) {
    if (const auto id = m_ids.extract({call.device, call.callId})) {
        completeFor(id.mapped(), call.established.has_value(), true);
    }
    m_handlers.callsChanged();
}

void CallControl::completeFor(const std::string& id, bool established, bool ended) {
    for (const Waiting& each : std::list<Waiting>(m_waiting)) {
        const bool isAnswerCall = each.service == Service::eAnswerCall;
        if (each.id != id || !(ended || (isAnswerCall && established))) {
            continue;
        }
        finish(each.serial, isAnswerCall && !established ? notPossible("the call has ended")
                                                         : CallControlOutcome{.kind = Kind::eDone});
    }
}

// ---- the calls

std::vector<LiveCallView> CallControl::views() {
    std::vector<LiveCallView> views = m_placed.views(m_settings.ownDevice);
    for (const PhoneCall& call : m_calls.all()) {
        if (!isOver(call) && !isOnlyConference(call)) {
            views.push_back(viewOf(call));
        }
    }
    std::stable_sort(views.begin(), views.end(), [](const LiveCallView& one, const LiveCallView& other) {
        return one.since < other.since;
    });
    return views;
}

LiveCallView CallControl::viewOf(const PhoneCall& call) {
    const CSTADevice& party = farEndOf(call);
    return {.id = idOf(call),
            .switchCallId = m_handlers.isUnnumbered(call.callId) ? std::string() : call.callId,
            .state = stateOf(call),
            .outgoing = call.outgoing,
            .device = deviceAtSwitch(call.device),
            .number = deviceAtSwitch(party.number),
            .name = party.name,
            .since = call.firstEvent,
            .connectedSince = call.established};
}

std::string CallControl::newId() {
    return m_idPrefix + std::to_string(++m_lastId);
}

const std::string& CallControl::idOf(const PhoneCall& call) {
    std::string& id = m_ids[{call.device, call.callId}];
    if (id.empty()) {
        id = newId();
    }
    return id;
}

const PhoneCall* CallControl::callOf(std::string_view id) const {
    const auto found =
        std::find_if(m_ids.begin(), m_ids.end(), [id](const auto& each) { return each.second == id; });
    return found == m_ids.end() ? nullptr : m_calls.find(found->first.first, found->first.second);
}

/// A member of a conference is connected by the conference.
WireConnection CallControl::connectionOf(const PhoneCall& call) const {
    const std::string& callId = m_calls.isInConference(call) ? call.conferenceId : call.callId;
    return {.callId = m_handlers.isUnnumbered(callId) ? std::string() : callId,
            .deviceId = deviceAtSwitch(call.device)};
}

std::string CallControl::deviceAtSwitch(const std::string& device) const {
    return device == CSTADevice::kLocalDevice ? m_settings.ownDevice : device;
}

}  // namespace host
