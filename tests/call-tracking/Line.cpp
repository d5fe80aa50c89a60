#include "tests/call-tracking/Line.h"

#include <utility>

namespace journaltest {

namespace {

void setParties(CSTACallControlEvent& event, const std::string& callId, CSTADevice calling, CSTADevice called,
                int localConnection, int cause) {
    event.setConnection(callId, CSTADevice::kLocalDevice);
    event.setCallingDevice(std::move(calling));
    event.setCalledDevice(std::move(called));
    event.setLocalConnectionInfo(localConnection);
    event.setCause(cause);
}

/// One line of `Line::journal`, built word by word; empty words leave no trace.
class Words {
public:
    explicit Words(std::string first) : m_text(std::move(first)) {}
    Words& add(const std::string& word, const char* before = "") {
        if (!word.empty()) {
            m_text += " " + std::string(before) + word;
        }
        return *this;
    }
    [[nodiscard]] const std::string& text() const { return m_text; }

private:
    std::string m_text;
};

template <typename Info>
Words wordsOf(const char* list, const CallItem& item, const Info& info) {
    Words words(list);
    words.add(info.getNumber()).add(item.getFirstname()).add(item.getSurname());
    return words;
}

std::string unlessZero(const std::string& duration) {
    return duration == "00:00" ? std::string() : duration;
}

}  // namespace

Line::Line(const char* softwareType) {
    settings.change([softwareType](auto& values) {
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

Line::~Line() = default;

void Line::deliverEvent(CSTAEvent* event) {
    event->dispatch(*this);
    parts.blindTransfer.eventDelivered(event->getType());
}

// ---- what happens on the line -----------------------------------------------------------------------------------

void Line::offers(const std::string& callId) {
    CSTAOfferedEvent event;
    setParties(event, callId, {}, here(), CSTA_LCS_Alerting, CSTA_EC_NewCall);
    deliverEvent(&event);
}

void Line::rings(const std::string& callId, const CSTADevice& caller, const With& with) {
    CSTADeliveredEvent event;
    setParties(event, callId, caller, here(),
               with.localConnection == -1 ? CSTA_LCS_Alerting : with.localConnection, with.cause);
    event.setConnection(callId, with.device);
    event.setAlertingDevice(here());
    event.setLastRedirectionDevice(with.redirectedBy);
    event.setPrivateData(with.privateData);
    deliverEvent(&event);
}

void Line::answers(const std::string& callId, const CSTADevice& caller, const CSTADevice& redirectedBy) {
    CSTAEstablishedEvent event;
    setParties(event, callId, caller, here(), CSTA_LCS_Connected, CSTA_EC_NewCall);
    event.setAnsweringDevice(here());
    event.setLastRedirectionDevice(redirectedBy);
    deliverEvent(&event);
}

void Line::dials(const std::string& callId, const CSTADevice& called, int cause) {
    CSTAOriginatedEvent event;
    setParties(event, callId, here(), called, CSTA_LCS_Connected, cause);
    deliverEvent(&event);
}

void Line::ringsAt(const std::string& callId, const CSTADevice& called, const CSTADevice& alerting,
                   int cause) {
    CSTADeliveredEvent event;
    setParties(event, callId, here(), called, CSTA_LCS_Connected, cause);
    event.setAlertingDevice(alerting);
    deliverEvent(&event);
}

void Line::isAnsweredBy(const std::string& callId, const CSTADevice& called, const CSTADevice& answering,
                        int cause) {
    CSTAEstablishedEvent event;
    setParties(event, callId, here(), called, CSTA_LCS_Connected, cause);
    event.setAnsweringDevice(answering);
    deliverEvent(&event);
}

void Line::queues(const std::string& callId, const CSTADevice& calling, const CSTADevice& called) {
    CSTAQueuedEvent event;
    setParties(event, callId, calling, called, CSTA_LCS_Queued, CSTA_EC_NewCall);
    deliverEvent(&event);
}

void Line::isEstablished(const std::string& callId, const CSTADevice& calling, const CSTADevice& called,
                         const CSTADevice& answering) {
    CSTAEstablishedEvent event;
    setParties(event, callId, calling, called, CSTA_LCS_Connected, CSTA_EC_NewCall);
    event.setAnsweringDevice(answering);
    deliverEvent(&event);
}

void Line::holds(const std::string& callId, int cause) {
    CSTAHeldEvent event;
    setParties(event, callId, {}, {}, CSTA_LCS_Hold, cause);
    deliverEvent(&event);
}

void Line::retrieves(const std::string& callId, bool mediaServer) {
    CSTARetrievedEvent event;
    setParties(event, callId, {}, {}, CSTA_LCS_Connected, CSTA_EC_NewCall);
    event.setConnectedToMediaServer(mediaServer);
    deliverEvent(&event);
}

void Line::diverts(const std::string& callId, const CSTADevice& calling, const CSTADevice& called,
                   const CSTADevice& newDestination) {
    CSTADivertedEvent event;
    setParties(event, callId, calling, called, CSTA_LCS_Null, CSTA_EC_CallForwardNoAnswer);
    event.setDivertingDevice(called);
    event.setNewDestination(newDestination);
    deliverEvent(&event);
}

void Line::fails(const std::string& callId, const CSTADevice& calling, const CSTADevice& called, int cause) {
    CSTAFailedEvent event;
    setParties(event, callId, calling, called, CSTA_LCS_Fail, cause);
    event.setFailingDevice(called);
    deliverEvent(&event);
}

void Line::hangsUp(const std::string& callId, int cause, const std::string& device) {
    CSTAConnectionClearedEvent event;
    setParties(event, callId, {}, {}, CSTA_LCS_Null, cause);
    event.setConnection(callId, device);
    deliverEvent(&event);
}

void Line::reports(const std::string& systemStatusText) {
    CSTASystemStatusEvent event;
    event.setSystemStatus(systemStatusText);
    deliverEvent(&event);
}

// ---- the face's part ------------------------------------------------------------------------------------------

void Line::handleCSTAOriginatedEvent(CSTAOriginatedEvent* event) {
    parts.callControlEvents.handleCSTAOriginatedEvent(event);
}
void Line::handleCSTAOfferedEvent(CSTAOfferedEvent* event) {
    parts.callControlEvents.handleCSTAOfferedEvent(event);
}
void Line::handleCSTAQueuedEvent(CSTAQueuedEvent* event) {
    parts.callControlEvents.handleCSTAQueuedEvent(event);
}
void Line::handleCSTADeliveredEvent(CSTADeliveredEvent* event) {
    parts.callControlEvents.handleCSTADeliveredEvent(event);
}
void Line::handleCSTADivertedEvent(CSTADivertedEvent* event) {
    parts.callControlEvents.handleCSTADivertedEvent(event);
}
void Line::handleCSTAEstablishedEvent(CSTAEstablishedEvent* event) {
    parts.callControlEvents.handleCSTAEstablishedEvent(event);
}
void Line::handleCSTAFailedEvent(CSTAFailedEvent* event) {
    parts.callControlEvents.handleCSTAFailedEvent(event);
}
void Line::handleCSTAHeldEvent(CSTAHeldEvent* event) {
    parts.blindTransfer.handleCSTAHeldEvent(*event);
}
void Line::handleCSTARetrievedEvent(CSTARetrievedEvent* event) {
    parts.callControlEvents.handleCSTARetrievedEvent(event);
}
void Line::handleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event) {
    parts.blindTransfer.handleCSTAConnectionClearedEvent(event);
}
void Line::handleCSTASystemStatusEvent(CSTASystemStatusEvent* event) {
    parts.systemStatusEvents.handleCSTASystemStatusEvent(event);
}

// ---- the journal ------------------------------------------------------------------------------------------------

std::vector<std::string> Line::journal() {
    std::vector<std::string> lines;
    for (const auto& item : list<MissedCallItem>()) {
        for (const auto& info : item.getMissedCallInfoList()) {
            lines.push_back(wordsOf("missed", item, info)
                                .add(info.getRedirectingNumber(), "by ")
                                .add(info.getCompletedElsewhere() ? "elsewhere" : "")
                                .text());
        }
    }
    for (const auto& item : list<DialledCallItem>()) {
        for (const auto& info : item.getDialledCallInfoList()) {
            lines.push_back(
                wordsOf("dialled", item, info)
                    .add(unlessZero(info.getDuration()))
                    .add(info.getRedirectingNumber(), "by ")
                    .add(info.getConnectedNumber(), "to ")
                    .add(info.getLogTarget() == CallLogEntryEvent::eDialledForwarded ? "sent on" : "")
                    .text());
        }
    }
    for (const auto& item : list<ReceivedCallItem>()) {
        for (const auto& info : item.getReceivedCallInfoList()) {
            lines.push_back(wordsOf("received", item, info)
                                .add(unlessZero(info.getDuration()))
                                .add(info.getRedirectingNumber(), "by ")
                                .add(info.getTransferNumberType() != 0 ? "transferred" : "")
                                .text());
        }
    }
    for (const auto& item : list<ForwardedCallItem>()) {
        for (const auto& info : item.getForwardedCallInfoList()) {
            lines.push_back(wordsOf("forwarded", item, info).add(info.getForwardedToNumber(), "to ").text());
        }
    }
    return lines;
}

}  // namespace journaltest
