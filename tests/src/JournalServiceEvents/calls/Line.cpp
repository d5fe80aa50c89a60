#include "tests/src/JournalServiceEvents/calls/Line.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <utility>

#include "host/services/HardwareVariant.h"
#include "journal-items/Occurrences.h"
#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAConferenceEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "platform/csta/CSTASystemEvents.h"
#include "tests/support/Table.h"

namespace journaltest {

CSTADevice deviceOf(const std::string& word) {
    if (word == "-" || word.empty()) {
        return {};
    }
    if (word == "here") {
        return {CSTADevice::kLocalDevice, {}};
    }
    const auto colon = word.find(':');
    std::string name = colon == std::string::npos ? "" : word.substr(colon + 1);
    std::replace(name.begin(), name.end(), '_', ' ');
    return {word.substr(0, colon), name};
}

namespace {

int causeOf(const std::string& word) {
    static const std::map<std::string, int> kCauses = {
        {"none", CSTA_EC_None},
        {"unknown", CSTA_EC_Unknown},
        {"transfer", CSTA_EC_Transfer},
        {"callback", CSTA_EC_CallBack},
        {"forward-busy", CSTA_EC_CallForwardBusy},
        {"group-pickup", CSTA_EC_GroupPickupNotify},
        {"pickup", CSTA_EC_CallPickup},
        {"park", CSTA_EC_CallPark},
        {"retrieve-park", CSTA_EC_CallRetrievePark},
        {"forwarded", CSTA_EC_Forwarded},
        {"directed-pickup", CSTA_EC_DirectedPickup},
        {"pickup-from-park", CSTA_EC_PickupFromPark},
        {"elsewhere", CSTA_EC_CompletedElsewhere},
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

bool journal::SettingsSnapshot::*settingOf(const std::string& name) {
    using Values = journal::SettingsSnapshot;
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

/// The texts in one, the empty ones left out.
std::string joined(const std::vector<std::string>& texts, const std::string& between = ", ") {
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() || text.empty() ? "" : between) + text;
    }
    return all;
}

/// The words of one occurrence.
std::string words(const std::vector<std::string>& all) {
    return joined(all, " ");
}

std::string after(const char* before, const std::string& word) {
    return word.empty() ? "" : before + word;
}

}  // namespace

Line::Line(const std::string& softwareType) {
    configure([&softwareType](auto& values) {
        values.m_softwareType = softwareType;
        values.m_serverBasedFeatures = true;
        values.deriveEventModes();
    });
    parts.platform.m_directoryService = &phonebook;
    parts.platform.m_digitAnalysisService = &digits;
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
void Line::deliver(Event event, Step step, const Handler& handler) {
    const std::string callId = step.words.at(0) == "-" ? "" : step.words.at(0);
    m_callIds.insert(callId);
    step.options.try_emplace("at", CSTADevice::kLocalDevice);
    event.setConnection(callId, step.options["at"]);
    event.setLastRedirectionDevice(deviceOf(step.options["by"]));
    event.setPrivateData(step.options["private"]);
    if (step.options.contains("cause")) {
        event.setCause(causeOf(step.options["cause"]));
    }
    if (step.options.contains("local")) {
        event.setLocalConnectionInfo(std::stoi(step.options["local"]));
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
        const int cause = step.words.size() > 1 ? CSTA_EC_HeldForTransfer : CSTA_EC_Alternate;
        deliver(fill(CSTAHeldEvent(), {}, {}, CSTA_LCS_Hold, cause), step,
                [&](auto& event) { parts.blindTransfer.handleCSTAHeldEvent(event); });
    } else if (step.verb == "retrieves") {
        auto event = fill(CSTARetrievedEvent(), {}, {}, CSTA_LCS_Connected);
        event.setConnectedToMediaServer(step.options.contains("media"));
        deliver(event, step, [&](auto& retrieved) { events.handleCSTARetrievedEvent(&retrieved); });
    } else if (step.verb == "informs") {
        CSTACallInformationEvent event;
        event.setDevice(device(1));
        deliver(event, step, [&](auto& informed) {
            parts.callInformationEvents.handleCSTACallInformationEvent(&informed);
        });
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
    } else if (step.verb == "member") {
        CSTAConferenceMembershipEvent event;
        event.setCallID(word(0));
        event.setDeviceID(deviceOf(word(1)).number);
        event.addUserInformation(deviceOf(word(1)));
        parts.conferenceEvents.handleCSTAConferenceMembershipEvent(&event);
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
        host::HardwareVariant::set(std::stoi(step.words.at(0)));
    } else {
        return false;
    }
    return true;
}

// ---- the outcome ------------------------------------------------------------------------------------------------

std::string Line::journal() {
    std::vector<std::string> lines;
    const auto add = [&lines](const char* name, const auto& items, const auto& restOf) {
        for (const auto& item : items) {
            for (const auto& info : occurrencesOf(item)) {
                lines.push_back(
                    words({name, info.getNumber(), item.getFirstname(), item.getSurname(), restOf(info)}));
            }
        }
    };
    const auto durationOf = [](const auto& info) {
        return info.getDuration() == "00:00" ? std::string() : info.getDuration();
    };
    add("missed", list<MissedCallItem>(), [](const auto& info) {
        return words(
            {after("by ", info.getRedirectingNumber()), info.getCompletedElsewhere() ? "elsewhere" : ""});
    });
    add("dialled", list<DialledCallItem>(), [&durationOf](const auto& info) {
        const bool sentOn = info.getLogTarget() == CallLogEntryEvent::eDialledForwarded;
        return words({durationOf(info), after("by ", info.getRedirectingNumber()),
                      after("to ", info.getConnectedNumber()), sentOn ? "sent on" : ""});
    });
    add("received", list<ReceivedCallItem>(), [&durationOf](const auto& info) {
        return words({durationOf(info), after("by ", info.getRedirectingNumber()),
                      info.getTransferNumberType() != 0 ? "transferred" : ""});
    });
    add("forwarded", list<ForwardedCallItem>(),
        [](const auto& info) { return after("to ", info.getForwardedToNumber()); });
    return joined(lines);
}

std::string partiesText(const journal::Call& call) {
    std::vector<std::pair<std::string, std::string>> parties;
    const auto add = [&parties](const std::string& role, const std::string& number, const std::string& name) {
        const std::string party = number + after(" ", name);
        const auto same = std::find_if(parties.begin(), parties.end(),
                                       [&party](const auto& known) { return known.second == party; });
        if (same != parties.end()) {
            same->first += "+" + role;
        } else if (!party.empty()) {
            parties.emplace_back(role, party);
        }
    };
    add("dialled", call.m_sDialledParty, call.m_sDialledPartyName);
    add("called", call.m_sCalledParty, call.m_sCalledPartyName);
    add("remote", call.m_sRemoteParty, call.m_sRemotePartyName);
    add("connected", call.m_sConnectedParty, call.m_sConnectedPartyName);
    add("redirecting", call.m_sRedirectingParty, call.m_sRedirectingPartyName);
    add("first", call.m_sFirstForwardedParty, call.m_sFirstForwardedPartyName);
    std::string text;
    for (const auto& [roles, party] : parties) {
        text += (text.empty() ? "" : " ") + roles + "[" + party + "]";
    }
    return text;
}

std::string Line::outcome() {
    std::vector<std::string> live;
    for (const std::string& callId : m_callIds) {
        if (const journal::Call* const call = parts.calls.findCallFromId(callId)) {
            live.push_back(words(
                {call->m_sCallId, call->isOutgoing() ? "out" : "in", std::to_string(call->m_State),
                 partiesText(*call), call->m_treatAsIncoming ? "as incoming" : "",
                 call->m_connectedToMediaServer ? "media" : "", call->m_redirected ? "sent here" : ""}));
        }
    }
    live.resize(std::max(live.size(), parts.calls.getNumberOfCalls()), "stray");
    for (int conference = parts.conferences.getNumberOfConferences(); conference > 0; --conference) {
        live.emplace_back("a conference");
    }
    if (!context.runningTimers().empty()) {
        live.emplace_back("a clearing held back");
    }
    return journal() + after("; ", joined(live));
}

}  // namespace journaltest
