#include "tests/call-tracking/Line.h"

#include <chrono>
#include <stdexcept>
#include <utility>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAConferenceEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "platform/csta/CSTASystemEvents.h"
#include "tests/support/FakeHardware.h"
#include "tests/support/Table.h"

namespace journaltest {

namespace {

CSTADevice deviceOf(const std::string& word) {
    if (word == "-" || word.empty()) {
        return {};
    }
    if (word == "here") {
        return {CSTADevice::kLocalDevice, {}};
    }
    const auto colon = word.find(':');
    return {word.substr(0, colon), colon == std::string::npos ? std::string() : word.substr(colon + 1)};
}

int causeOf(const std::string& word) {
    static const std::map<std::string, int> kCauses = {
        {"none", CSTA_EC_None},
        {"unknown", CSTA_EC_Unknown},
        {"alternate", CSTA_EC_Alternate},
        {"held-for-transfer", CSTA_EC_HeldForTransfer},
        {"transfer", CSTA_EC_Transfer},
        {"callback", CSTA_EC_CallBack},
        {"forward-busy", CSTA_EC_CallForwardBusy},
        {"forward", CSTA_EC_CallForward},
        {"group-pickup", CSTA_EC_GroupPickupNotify},
        {"pickup", CSTA_EC_CallPickup},
        {"park", CSTA_EC_CallPark},
        {"retrieve-park", CSTA_EC_CallRetrievePark},
        {"busy", CSTA_EC_Busy},
        {"new", CSTA_EC_NewCall},
        {"forwarded", CSTA_EC_Forwarded},
        {"directed-pickup", CSTA_EC_DirectedPickup},
        {"pickup-from-park", CSTA_EC_PickupFromPark},
        {"elsewhere", CSTA_EC_CompletedElsewhere},
        {"cleared", CSTA_EC_NormalClearing},
        {"redirected", CSTA_EC_Redirected},
        {"distributed", CSTA_EC_RedirectedByDistribution},
    };
    return kCauses.at(word);
}

template <typename Event>
Event fill(Event event, CSTADevice calling, CSTADevice called, int local, int cause = CSTA_EC_NewCall) {
    event.setCallingDevice(std::move(calling));
    event.setCalledDevice(std::move(called));
    event.setLocalConnectionInfo(local);
    event.setCause(cause);
    return event;
}

bool journal::SettingValues::*settingOf(const std::string& name) {
    using Values = journal::SettingValues;
    static const std::map<std::string, bool Values::*> kSettings = {
        {"callLog", &Values::m_callLogEnabled},
        {"missedLogging", &Values::m_missedLogging},
        {"deleteWhenCalled", &Values::m_deleteMissedWhenCalled},
        {"serverFeatures", &Values::m_serverBasedFeatures},
        {"displayLast", &Values::m_ForwardingPartyDisplayLast},
        {"keptElsewhere", &Values::m_ringCentralSyncCallLog},
        {"callEvents", &Values::m_useCSTACallControlEvents},
        {"marksMissed", &Values::m_enterMarkedMissedCall},
        {"otherServer", &Values::m_xsiConfigured},
    };
    return kSettings.at(name);
}

/// One line of `Line::journal`, built word by word; empty words leave no trace.
class Words {
public:
    Words(const char* list, const CallItem& item, const CallInfo& info) : m_text(list) {
        add(info.getNumber()).add(item.getFirstname()).add(item.getSurname());
    }
    Words& add(const std::string& word, const char* before = "") {
        if (!word.empty()) {
            m_text += " " + std::string(before) + word;
        }
        return *this;
    }
    Words& addUnlessZero(const std::string& duration) { return add(duration == "00:00" ? "" : duration); }
    [[nodiscard]] const std::string& text() const { return m_text; }

private:
    std::string m_text;
};

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += (text.empty() ? "" : ", ") + line;
    }
    return text;
}

}  // namespace

Line::Line(const std::string& softwareType) {
    configure([&softwareType](auto& values) {
        values.m_softwareType = softwareType;
        values.m_serverBasedFeatures = true;
        values.deriveEventModes();
    });
    parts.collaborators.m_directoryService = &phonebook;
    parts.collaborators.m_digitAnalysisService = &digits;
    parts.clock.adoptClock(&clock);
    parts.adapter.init(&database);
    parts.blindTransfer.start(context, *this);
}

// ---- what happens on the line -----------------------------------------------------------------------------------

Line::Step Line::stepOf(const std::string& text) {
    Step step;
    for (const std::string& word : split(text, ' ')) {
        const auto equals = word.find('=');
        if (equals != std::string::npos) {
            step.options[word.substr(0, equals)] = word.substr(equals + 1);
        } else if (step.verb.empty()) {
            step.verb = word;
        } else {
            step.words.push_back(word);
        }
    }
    return step;
}

void Line::plays(const std::string& script) {
    for (const std::string& text : split(script, ';')) {
        const Step step = stepOf(text);
        if (!happensToCall(step) && !happensToConnection(step) && !happensToSeveralCalls(step) &&
            !happensAround(step)) {
            throw std::invalid_argument("no such step: " + text);
        }
    }
}

template <typename Event, typename Handler>
void Line::deliver(Event event, const Step& step, const Handler& handler) {
    const auto option = [&step](const char* name, const std::string& otherwise) {
        const auto found = step.options.find(name);
        return found == step.options.end() ? otherwise : found->second;
    };
    const std::string callId = step.words.at(0) == "-" ? "" : step.words.at(0);
    m_callIds.insert(callId);
    event.setConnection(callId, option("at", CSTADevice::kLocalDevice));
    event.setLastRedirectionDevice(deviceOf(option("by", "-")));
    event.setPrivateData(option("private", ""));
    const std::string cause = option("cause", "");
    if (!cause.empty()) {
        event.setCause(causeOf(cause));
    }
    const std::string local = option("local", "");
    if (!local.empty()) {
        event.setLocalConnectionInfo(std::stoi(local));
    }
    handler(event);
    parts.blindTransfer.eventDelivered(event.getType());
}

bool Line::happensToCall(const Step& step) {
    const auto device = [&step](std::size_t word) { return deviceOf(step.words.at(word)); };
    const CSTADevice here = deviceOf("here");
    auto& events = parts.callControlEvents;
    if (step.verb == "offers") {
        deliver(fill(CSTAOfferedEvent(), {}, here, CSTA_LCS_Alerting), step,
                [&](auto& event) { events.handleCSTAOfferedEvent(&event); });
    } else if (step.verb == "rings" || step.verb == "ringsAt") {
        const bool in = step.verb == "rings";
        CSTADeliveredEvent event = in ? fill(CSTADeliveredEvent(), device(1), here, CSTA_LCS_Alerting)
                                      : fill(CSTADeliveredEvent(), here, device(1), CSTA_LCS_Connected);
        event.setAlertingDevice(in ? here : device(2));
        deliver(event, step, [&](auto& delivered) { events.handleCSTADeliveredEvent(&delivered); });
    } else if (step.verb == "answers" || step.verb == "reaches" || step.verb == "established") {
        const bool all = step.verb == "established";
        const bool in = step.verb == "answers";
        CSTAEstablishedEvent event = fill(CSTAEstablishedEvent(), in || all ? device(1) : here,
                                          in ? here : device(all ? 2 : 1), CSTA_LCS_Connected);
        event.setAnsweringDevice(in ? here : device(all ? 3 : 2));
        deliver(event, step, [&](auto& established) { events.handleCSTAEstablishedEvent(&established); });
    } else if (step.verb == "dials") {
        deliver(fill(CSTAOriginatedEvent(), here, device(1), CSTA_LCS_Connected), step,
                [&](auto& event) { events.handleCSTAOriginatedEvent(&event); });
    } else if (step.verb == "queues") {
        deliver(fill(CSTAQueuedEvent(), device(1), device(2), CSTA_LCS_Queued), step,
                [&](auto& event) { events.handleCSTAQueuedEvent(&event); });
    } else {
        return false;
    }
    return true;
}

bool Line::happensToConnection(const Step& step) {
    const auto device = [&step](std::size_t word) { return deviceOf(step.words.at(word)); };
    auto& events = parts.callControlEvents;
    if (step.verb == "diverts") {
        auto event =
            fill(CSTADivertedEvent(), device(1), device(2), CSTA_LCS_Null, CSTA_EC_CallForwardNoAnswer);
        event.setDivertingDevice(device(2));
        event.setNewDestination(device(3));
        deliver(event, step, [&](auto& diverted) { events.handleCSTADivertedEvent(&diverted); });
    } else if (step.verb == "fails") {
        auto event = fill(CSTAFailedEvent(), device(1), device(2), CSTA_LCS_Fail, CSTA_EC_Busy);
        event.setFailingDevice(device(2));
        deliver(event, step, [&](auto& failed) { events.handleCSTAFailedEvent(&failed); });
    } else if (step.verb == "holds") {
        deliver(fill(CSTAHeldEvent(), {}, {}, CSTA_LCS_Hold, CSTA_EC_Alternate), step,
                [&](auto& event) { parts.blindTransfer.handleCSTAHeldEvent(event); });
    } else if (step.verb == "retrieves") {
        auto event = fill(CSTARetrievedEvent(), {}, {}, CSTA_LCS_Connected);
        event.setConnectedToMediaServer(step.options.contains("media"));
        deliver(event, step, [&](auto& retrieved) { events.handleCSTARetrievedEvent(&retrieved); });
    } else if (step.verb == "clears") {
        deliver(fill(CSTAConnectionClearedEvent(), {}, {}, CSTA_LCS_Null, CSTA_EC_NormalClearing), step,
                [&](auto& event) { parts.blindTransfer.handleCSTAConnectionClearedEvent(&event); });
    } else {
        return false;
    }
    return true;
}

bool Line::happensToSeveralCalls(const Step& step) {
    const auto word = [&step](std::size_t index) { return step.words.at(index); };
    if (step.verb == "transfers") {
        CSTATransferredEvent event;
        event.setOldCalls(word(0) == "-" ? "" : word(0), word(1) == "-" ? "" : word(1));
        event.setTransferringDevice(deviceOf(word(3)));
        event.setTransferredToDevice(deviceOf(word(4)));
        event.setLocalConnectionInfo(CSTA_LCS_Connected);
        event.setCause(CSTA_EC_Transfer);
        Step onNewCall = step;
        onNewCall.words = {word(2)};
        deliver(event, onNewCall,
                [&](auto& transferred) { parts.transferredEvents.handleCSTATransferredEvent(&transferred); });
    } else if (step.verb == "conference") {
        CSTAConferencedEvent event;
        event.setConferenceCallID(word(0));
        event.setPrimaryOldCall(word(1), word(2));
        event.setSecondaryOldCall(word(3), word(4));
        event.addNewConnectionCallID(word(0));
        parts.conferenceEvents.handleCSTAConferencedEvent(&event);
        parts.blindTransfer.eventDelivered(event.getType());
    } else {
        return false;
    }
    return true;
}

bool Line::happensAround(const Step& step) {
    if (step.verb == "passes") {
        clock.advance(std::stol(step.words.at(0)));
    } else if (step.verb == "waits") {
        context.advance(std::chrono::milliseconds(std::stol(step.words.at(0))));
    } else if (step.verb == "status") {
        CSTASystemStatusEvent event;
        event.setSystemStatus(step.words.at(0));
        parts.systemStatusEvents.handleCSTASystemStatusEvent(&event);
        parts.blindTransfer.eventDelivered(event.getType());
    } else if (step.verb == "set") {
        configure([&step](auto& values) { values.*settingOf(step.words.at(0)) = step.words.at(1) == "on"; });
    } else if (step.verb == "hardware") {
        FakeHardware::setSubPlatformVariant(std::stoi(step.words.at(0)));
    } else {
        return false;
    }
    return true;
}

// ---- the outcome ------------------------------------------------------------------------------------------------

std::string Line::journal() {
    std::vector<std::string> lines;
    for (const auto& item : list<MissedCallItem>()) {
        for (const auto& info : item.getMissedCallInfoList()) {
            lines.push_back(Words("missed", item, info)
                                .add(info.getRedirectingNumber(), "by ")
                                .add(info.getCompletedElsewhere() ? "elsewhere" : "")
                                .text());
        }
    }
    for (const auto& item : list<DialledCallItem>()) {
        for (const auto& info : item.getDialledCallInfoList()) {
            const bool sentOn = info.getLogTarget() == CallLogEntryEvent::eDialledForwarded;
            lines.push_back(Words("dialled", item, info)
                                .addUnlessZero(info.getDuration())
                                .add(info.getRedirectingNumber(), "by ")
                                .add(info.getConnectedNumber(), "to ")
                                .add(sentOn ? "sent on" : "")
                                .text());
        }
    }
    for (const auto& item : list<ReceivedCallItem>()) {
        for (const auto& info : item.getReceivedCallInfoList()) {
            lines.push_back(Words("received", item, info)
                                .addUnlessZero(info.getDuration())
                                .add(info.getRedirectingNumber(), "by ")
                                .add(info.getTransferNumberType() != 0 ? "transferred" : "")
                                .text());
        }
    }
    for (const auto& item : list<ForwardedCallItem>()) {
        for (const auto& info : item.getForwardedCallInfoList()) {
            lines.push_back(Words("forwarded", item, info).add(info.getForwardedToNumber(), "to ").text());
        }
    }
    return joined(lines);
}

std::string partiesText(const journal::Call& call) {
    std::string text;
    const auto add = [&text](const char* role, const std::string& number, const std::string& name) {
        if (!number.empty() || !name.empty()) {
            text += std::string(text.empty() ? "" : " ") + role + "[" + number +
                    (name.empty() ? "" : " " + name) + "]";
        }
    };
    add("dialled", call.m_sDialledParty, call.m_sDialledPartyName);
    add("called", call.m_sCalledParty, call.m_sCalledPartyName);
    add("remote", call.m_sRemoteParty, call.m_sRemotePartyName);
    add("connected", call.m_sConnectedParty, call.m_sConnectedPartyName);
    add("redirecting", call.m_sRedirectingParty, call.m_sRedirectingPartyName);
    add("first", call.m_sFirstForwardedParty, call.m_sFirstForwardedPartyName);
    return text;
}

std::string Line::liveCalls() const {
    std::vector<std::string> lines;
    for (const std::string& callId : m_callIds) {
        if (const journal::Call* const call = parts.calls.findCallFromId(callId)) {
            const std::string parties = partiesText(*call);
            lines.push_back(
                call->m_sCallId + (call->isOutgoing() ? " out " : " in ") + std::to_string(call->m_State) +
                (parties.empty() ? "" : " " + parties) + (call->m_treatAsIncoming ? " as incoming" : "") +
                (call->m_connectedToMediaServer ? " media" : "") + (call->m_redirected ? " sent here" : ""));
        }
    }
    while (lines.size() < parts.calls.getNumberOfCalls()) {
        lines.emplace_back("stray");
    }
    return joined(lines);
}

std::string Line::outcome() {
    const std::string live = liveCalls();
    return journal() + (live.empty() ? "" : "; " + live);
}

}  // namespace journaltest
