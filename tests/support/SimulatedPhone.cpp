#include "tests/support/SimulatedPhone.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <utility>

#include "journal-items/Occurrences.h"
#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAConferenceEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "platform/csta/CSTAPrivateEvents.h"
#include "platform/csta/CSTASystemEvents.h"
#include "tests/support/CallTexts.h"
#include "tests/support/FakeHardware.h"
#include "tests/support/ItemBuilders.h"
#include "tests/support/Table.h"

namespace journaltest {

namespace {

const CSTADevice kHere{CSTADevice::kLocalDevice, {}};

const std::map<std::string, int> kCauses = {
    {"none", CSTA_EC_None},
    {"unknown", CSTA_EC_Unknown},
    {"transfer", CSTA_EC_Transfer},
    {"forward-busy", CSTA_EC_CallForwardBusy},
    {"group-pickup", CSTA_EC_GroupPickupNotify},
    {"pickup", CSTA_EC_CallPickup},
    {"forwarded", CSTA_EC_Forwarded},
    {"directed-pickup", CSTA_EC_DirectedPickup},
    {"pickup-from-park", CSTA_EC_PickupFromPark},
    {"elsewhere", CSTA_EC_CompletedElsewhere},
    {"redirected", CSTA_EC_Redirected},
    {"distributed", CSTA_EC_RedirectedByDistribution},
    {"park", CSTA_EC_CallPark},
};

const std::map<std::string, int> kLocalStates = {
    {"null", CSTA_LCS_Null}, {"connected", CSTA_LCS_Connected}, {"hold", CSTA_LCS_Hold}};

const std::map<std::string, CallLogEntryEvent::_LogTarget> kLogs = {
    {"missed", CallLogEntryEvent::eMissed},
    {"dialled", CallLogEntryEvent::eDialled},
    {"dialledForwarded", CallLogEntryEvent::eDialledForwarded},
    {"dialledUnanswered", CallLogEntryEvent::eDialledUnanswered},
};

using Values = journal::SettingsSnapshot;
const std::map<std::string, bool Values::*> kSettings = {
    {"callLog", &Values::m_callLogEnabled},
    {"missedLogging", &Values::m_missedLogging},
    {"deleteWhenCalled", &Values::m_deleteMissedWhenCalled},
    {"serverFeatures", &Values::m_serverBasedFeatures},
    {"displayLast", &Values::m_ForwardingPartyDisplayLast},
    {"keptElsewhere", &Values::m_ringCentralSyncCallLog},
    {"callEvents", &Values::m_useCSTACallControlEvents},
    {"marksMissed", &Values::m_enterMarkedMissedCall},
};

template <typename Event>
Event eventOf(CSTADevice calling, CSTADevice called, int local, int cause = CSTA_EC_NewCall) {
    Event event;
    event.setCallingDevice(std::move(calling));
    event.setCalledDevice(std::move(called));
    event.setLocalConnectionInfo(local);
    event.setCause(cause);
    return event;
}

std::string after(const char* before, const std::string& word) {
    return word.empty() ? "" : before + word;
}

std::string callIdOf(const std::string& word) {
    return word == "-" ? "" : word;
}

}  // namespace

/// Gives access to the components.
class SimulatedPhone::Service final : public JournalServiceQorvexTel {
public:
    Service() : JournalServiceQorvexTel(nullptr) {}
    using JournalService::components;
};

void SimulatedPhone::Deleter::operator()(Service* service) const {
    service->shutdown();
    delete service;
}

SimulatedPhone::SimulatedPhone(const std::string& softwareType) {
    management.set("software-type", softwareType);
    management.set("mac-addr", "00:1a:e8:00:00:10");
    management.set("server-based-features", "true");
    context.addService("CSTAServiceIfc", &csta);
    context.addService("DataAccessServiceIfc", &database);
    context.addService("DirectoryServiceIfc", &phonebook);
    context.addService("LocalMgmtIfc", &management);
    context.addService("ClockServiceIfc", &clock);
    context.addService("DigitAnalysisServiceIfc", &digits);
    context.addService("MobilityServiceIfc", &mobility);
    context.addService("TeamServiceIfc", &team);
    context.addService("UCServiceIfc", &uc);
    context.addService("PallaxServiceIfc", &pallax);
    context.addService("WSIServiceIfc", &wsi);
}

void SimulatedPhone::starts() {
    m_service.reset(new Service);
    m_service->init(context);
    m_service->run();
}

JournalServiceQorvexTel& SimulatedPhone::service() {
    if (!m_service) {
        starts();
    }
    return *m_service;
}

journal::JournalComponents& SimulatedPhone::components() {
    service();
    return m_service->components();
}

// ---- the events at the telephone

CSTADevice SimulatedPhone::Step::device(std::size_t index) const {
    return deviceOf(words.at(index));
}

SimulatedPhone::Step SimulatedPhone::stepOf(const std::string& text) {
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

void SimulatedPhone::plays(const std::string& script) {
    for (const std::string& text : split(script, ';')) {
        const Step step = stepOf(text);
        if (!happensToCall(step) && !happensToConnection(step) && !happensToSeveralCalls(step) &&
            !happensAround(step)) {
            throw std::invalid_argument("no such step: " + text);
        }
    }
}

template <typename Event>
void SimulatedPhone::deliver(Event event, Step step) {
    const std::string callId = callIdOf(step.word(0));
    m_callIds.insert(callId);
    step.options.try_emplace("at", CSTADevice::kLocalDevice);
    event.setConnection(callId, step.options["at"]);
    event.setLastRedirectionDevice(deviceOf(step.options["by"]));
    event.setPrivateData(step.options["private"]);
    if (step.options.contains("cause")) {
        event.setCause(kCauses.at(step.options["cause"]));
    }
    if (step.options.contains("local")) {
        event.setLocalConnectionInfo(kLocalStates.at(step.options["local"]));
    }
    delivers(event);
}

bool SimulatedPhone::happensToCall(const Step& step) {
    if (step.verb == "offers") {
        deliver(eventOf<CSTAOfferedEvent>({}, kHere, CSTA_LCS_Alerting), step);
    } else if (step.verb == "rings" || step.verb == "misses") {
        auto event = eventOf<CSTADeliveredEvent>(step.device(1), kHere, CSTA_LCS_Alerting);
        event.setAlertingDevice(kHere);
        deliver(event, step);
        if (step.verb == "misses") {
            plays("clears " + step.word(0));
        }
    } else if (step.verb == "ringsAt") {
        auto event = eventOf<CSTADeliveredEvent>(kHere, step.device(1), CSTA_LCS_Connected);
        event.setAlertingDevice(step.device(2));
        deliver(event, step);
    } else if (step.verb == "answers" || step.verb == "reaches" || step.verb == "established") {
        const bool all = step.verb == "established";
        const bool in = step.verb == "answers";
        auto event = eventOf<CSTAEstablishedEvent>(in || all ? step.device(1) : kHere,
                                                   in ? kHere : step.device(all ? 2 : 1), CSTA_LCS_Connected);
        event.setAnsweringDevice(in ? kHere : step.device(all ? 3 : 2));
        deliver(event, step);
    } else if (step.verb == "dials") {
        deliver(eventOf<CSTAOriginatedEvent>(kHere, step.device(1), CSTA_LCS_Connected), step);
    } else if (step.verb == "queues") {
        deliver(eventOf<CSTAQueuedEvent>(step.device(1), step.device(2), CSTA_LCS_Queued), step);
    } else {
        return false;
    }
    return true;
}

bool SimulatedPhone::happensToConnection(const Step& step) {
    if (step.verb == "diverts") {
        auto event = eventOf<CSTADivertedEvent>(step.device(1), step.device(2), CSTA_LCS_Null,
                                                CSTA_EC_CallForwardNoAnswer);
        event.setDivertingDevice(step.device(2));
        event.setNewDestination(step.device(3));
        deliver(event, step);
    } else if (step.verb == "fails") {
        auto event = eventOf<CSTAFailedEvent>(step.device(1), step.device(2), CSTA_LCS_Fail, CSTA_EC_Busy);
        event.setFailingDevice(step.device(2));
        deliver(event, step);
    } else if (step.verb == "holds") {
        const int cause = step.words.size() > 1 ? CSTA_EC_HeldForTransfer : CSTA_EC_Alternate;
        deliver(eventOf<CSTAHeldEvent>({}, {}, CSTA_LCS_Hold, cause), step);
    } else if (step.verb == "retrieves") {
        auto event = eventOf<CSTARetrievedEvent>({}, {}, CSTA_LCS_Connected);
        event.setConnectedToMediaServer(step.options.contains("media"));
        deliver(event, step);
    } else if (step.verb == "informs") {
        CSTACallInformationEvent event;
        event.setDevice(step.device(1));
        deliver(event, step);
    } else if (step.verb == "clears") {
        deliver(eventOf<CSTAConnectionClearedEvent>({}, {}, CSTA_LCS_Null, CSTA_EC_NormalClearing), step);
    } else {
        return false;
    }
    return true;
}

bool SimulatedPhone::happensToSeveralCalls(const Step& step) {
    if (step.verb == "transfers") {
        auto event = eventOf<CSTATransferredEvent>({}, {}, CSTA_LCS_Connected, CSTA_EC_Transfer);
        event.setOldCalls(callIdOf(step.word(0)), callIdOf(step.word(1)));
        event.setTransferringDevice(step.device(3));
        event.setTransferredToDevice(step.device(4));
        Step onNewCall = step;
        onNewCall.words = {step.word(2)};
        deliver(event, onNewCall);
    } else if (step.verb == "member") {
        CSTAConferenceMembershipEvent event;
        event.setCallID(step.word(0));
        event.setDeviceID(step.device(1).number);
        event.addUserInformation(step.device(1));
        delivers(event);
    } else if (step.verb == "conference") {
        CSTAConferencedEvent event;
        event.setConferenceCallID(step.word(0));
        event.setPrimaryOldCall(step.word(1), step.word(2));
        event.setSecondaryOldCall(step.word(3), step.word(4));
        event.addNewConnectionCallID(step.word(0));
        delivers(event);
    } else {
        return false;
    }
    return true;
}

bool SimulatedPhone::happensAround(const Step& step) {
    if (step.verb == "passes") {
        clock.advance(std::stol(step.word(0)));
    } else if (step.verb == "waits") {
        context.advance(std::chrono::milliseconds(std::stol(step.word(0))));
    } else if (step.verb == "status") {
        CSTASystemStatusEvent event;
        event.setSystemStatus(step.word(0));
        delivers(event);
    } else if (step.verb == "logs") {
        CallLogEntryEvent entry;
        entry.logTarget = kLogs.at(step.word(0));
        entry.subscriberNumber = step.word(1);
        entry.entryTime = "2026-11-23T08:00:00Z";
        CSTAPrivateEvent event;
        event.setCallLogEntry(entry);
        delivers(event);
    } else if (step.verb == "set" && step.word(0) == "otherServer") {
        service().setJournalServiceCallLogEventsDisabling(step.word(1) == "on" ? "true" : "false");
    } else if (step.verb == "set") {
        configure([&step](Values& values) { values.*kSettings.at(step.word(0)) = step.word(1) == "on"; });
    } else if (step.verb == "hardware") {
        setHardwareVariant(std::stoi(step.word(0)));
    } else {
        return false;
    }
    return true;
}

// ---- the outcome

std::string SimulatedPhone::journal() {
    std::vector<std::string> calls;
    const auto add = [&calls](const char* name, const auto& items, const auto& restOf) {
        for (const auto& item : items) {
            for (const auto& info : occurrencesOf(item)) {
                calls.push_back(joined(
                    {name, info.getNumber(), item.getFirstname(), item.getSurname(), restOf(info)}, " "));
            }
        }
    };
    const auto durationOf = [](const auto& info) {
        return info.getDuration() == "00:00" ? std::string() : info.getDuration();
    };
    add("missed", list<MissedCallItem>(), [](const auto& info) {
        return joined(
            {after("by ", info.getRedirectingNumber()), info.getCompletedElsewhere() ? "elsewhere" : ""},
            " ");
    });
    add("dialled", list<DialledCallItem>(), [&durationOf](const auto& info) {
        const bool sentOn = info.getLogTarget() == CallLogEntryEvent::eDialledForwarded;
        return joined({durationOf(info), after("by ", info.getRedirectingNumber()),
                       after("to ", info.getConnectedNumber()), sentOn ? "sent on" : ""},
                      " ");
    });
    add("received", list<ReceivedCallItem>(), [&durationOf](const auto& info) {
        return joined({durationOf(info), after("by ", info.getRedirectingNumber()),
                       info.getTransferNumberType() != 0 ? "transferred" : ""},
                      " ");
    });
    add("forwarded", list<ForwardedCallItem>(),
        [](const auto& info) { return after("to ", info.getForwardedToNumber()); });
    return joined(calls, ", ");
}

std::string SimulatedPhone::outcome() {
    const journal::JournalComponents& parts = components();
    std::vector<std::string> live;
    for (const std::string& callId : m_callIds) {
        if (const journal::Call* const call = parts.calls.findCallFromId(callId)) {
            live.push_back(
                joined({call->m_sCallId, call->isOutgoing() ? "out" : "in", nameOf(call->m_State),
                        partiesText(*call), call->m_treatAsIncoming ? "as incoming" : "",
                        call->m_connectedToMediaServer ? "media" : "", call->m_redirected ? "sent here" : ""},
                       " "));
        }
    }
    live.resize(std::max(live.size(), parts.calls.getNumberOfCalls()), "stray");
    for (int conference = parts.conferences.getNumberOfConferences(); conference > 0; --conference) {
        live.emplace_back("a conference");
    }
    if (!context.runningTimers().empty()) {
        live.emplace_back("a clearing held back");
    }
    return journal() + after("; ", joined(live, ", "));
}

bool SimulatedPhone::takes(const std::string& key, const std::string& value) {
    ManageableData data;
    data.populate(key, key, value);
    return service().setData(data);
}

std::string SimulatedPhone::setting(const std::string& key) {
    ManageableData data;
    data.setRootId(key, nullptr);
    return service().getData(data) ? data.interogate(key)->getValue() : "refused";
}

void expectOutcomes(const std::string& text, const std::vector<const char*>& types) {
    for (const auto& row : table(4, text)) {
        for (const char* const type : types) {
            SCOPED_TRACE(row[0] + " on '" + type + "': " + row[1]);
            setHardwareVariant(0);
            SimulatedPhone phone(type);
            phone.plays(row[1]);
            const bool sip = type == std::string(softwaretypes::sip);
            EXPECT_EQ(phone.outcome(), sip && row[3] != "=" ? row[3] : row[2]);
        }
    }
}

}  // namespace journaltest
