#include "bench/calls/CallWriter.h"

#include "host/csta-server/EventWriter.h"
#include "host/csta-wire/EventSchemas.h"
#include "host/csta-wire/NameSpaces.h"
#include "host/switch/calls/SwitchCall.h"

namespace bench {

namespace {

using Side = host::SwitchCall::Side;

host::SwitchEvents eventsOf(const CallPlan& plan, std::size_t number) {
    const std::size_t party = plan.partyOf(number);
    const host::SwitchParty own{kDevice, ""};
    const host::SwitchParty other{CallPlan::numberOf(party), CallPlan::nameOf(party)};
    const bool dialled = plan.kind == CallKind::eDialled;
    host::SwitchCall call(plan.callId(number), dialled ? own : other, dialled ? other : own, {}, "");
    if (plan.kind == CallKind::eForwarded) {
        return call.divert({"2099", "Desk"}, "callForwardImmediate");
    }
    host::SwitchEvents events = call.originate(dialled ? "makeCall" : "");
    events.push_back(call.ring());
    if (plan.kind != CallKind::eMissed) {
        events.push_back(call.answerCall());
    }
    if (plan.kind == CallKind::eReceived) {
        events.push_back(call.hold(Side::eCalled, "normal"));
        events.push_back(call.retrieve(Side::eCalled));
    }
    events.push_back(call.leave(dialled ? Side::eCaller : Side::eCalled));
    return events;
}

}  // namespace

std::vector<std::string> messagesOf(const CallPlan& plan, std::size_t call,
                                    const host::SwitchMonitor& monitor) {
    static const std::string nameSpace = host::cstaNameSpace("ed4");
    std::vector<std::string> messages;
    for (const host::SwitchEvent& event : eventsOf(plan, call)) {
        const host::EventSchema& schema = host::eventSchema(event.type);
        for (const host::SwitchEvent::Listener& listener : event.listeners) {
            if (listener.device == kDevice &&
                !monitor.filter.suppresses(schema.filterGroup, schema.filterMember)) {
                messages.push_back(host::writeEvent(nameSpace, event, monitor.id, listener.localConnection));
            }
        }
    }
    return messages;
}

}  // namespace bench
