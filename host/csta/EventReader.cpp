#include "host/csta/EventReader.h"

#include <algorithm>
#include <utility>

#include "host/csta-wire/EventSchemas.h"
#include "host/csta-wire/WireDocument.h"
#include "host/csta/DeviceReader.h"
#include "host/csta/EventBuilder.h"
#include "host/csta/EventRules.h"

namespace host {

EventReader::EventReader(std::string ownDevice) : m_ownDevice(std::move(ownDevice)) {}

std::string EventReader::crossRefIdOf(const WireDocument& document) {
    return childText(document.root(), "monitorCrossRefID");
}

std::vector<std::unique_ptr<CSTAEvent>> EventReader::read(const WireDocument& document,
                                                          const EventSource& source) {
    const EventSchema* schema = findEventSchema(document.name());
    if (schema == nullptr) {
        return {};
    }
    EventBuilder builder(*schema, document, DeviceReader(m_ownDevice, source.device), source.crossRefId);
    builder.setConference(isConference(builder.callId()));

    std::vector<std::unique_ptr<CSTAEvent>> events;
    if (!isForOwnConnection(builder.context())) {
        return events;
    }
    if (std::unique_ptr<CSTAEvent> cleared = builder.buildSecondaryClearing()) {
        events.push_back(std::move(cleared));
    }
    events.push_back(builder.build());
    if (endsWithoutClearedEvent(builder.context())) {
        events.push_back(builder.buildClearing());
    }
    if (schema->event == WireEvent::eConferenced) {
        rememberConference(builder.newCallId());
    } else if (schema->event == WireEvent::eConnectionCleared &&
               builder.context().subject != EventParty::eOther) {
        forgetConference(builder.callId());
    }
    return events;
}

bool EventReader::isConference(std::string_view callId) const {
    return std::find(m_conferences.begin(), m_conferences.end(), callId) != m_conferences.end();
}

void EventReader::rememberConference(std::string callId) {
    forgetConference(callId);
    m_conferences.push_back(std::move(callId));
    if (m_conferences.size() > kKeptConferences) {
        m_conferences.pop_front();
    }
}

void EventReader::forgetConference(std::string_view callId) {
    m_conferences.erase(std::remove(m_conferences.begin(), m_conferences.end(), callId), m_conferences.end());
}

}  // namespace host
