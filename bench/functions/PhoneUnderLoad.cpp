#include "bench/functions/PhoneUnderLoad.h"

#include <optional>
#include <utility>

#include "bench/calls/CallWriter.h"
#include "host/calls/PhoneCalls.h"
#include "host/csta-events/EventReader.h"
#include "host/csta-wire/WireDocument.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/DataResponse.h"
#include "tests/support/CapturedLog.h"

namespace bench {

namespace {

using Helper = CallListDatabaseAdapterHelper;

const host::SwitchMonitor kMonitor{
    .id = "1", .device = kDevice, .number = kDevice, .client = 1, .filter = {}};

}  // namespace

PhoneUnderLoad::PhoneUnderLoad(std::size_t parties) {
    journaltest::CapturedLog::switchOff();
    m_phone.management.set("server-based-features", "false");
    m_phone.starts();
    m_phone.database.setResponse([this](const std::string& request) { return respond(request); });
    deliver(eventsOf({.idPrefix = "3"}, parties));
}

std::vector<host::PhoneEvent> PhoneUnderLoad::eventsOf(const CallPlan& plan, std::size_t calls) {
    host::PhoneCalls known;
    host::EventReader reader(kDevice, known);
    std::vector<host::PhoneEvent> events;
    for (std::size_t call = 0; call < calls; ++call) {
        for (const std::string& message : messagesOf(plan, call, kMonitor)) {
            std::string fault;
            const std::optional<host::WireDocument> document = host::WireDocument::parse(message, fault);
            for (host::PhoneEvent& event : reader.read(document.value(), {kMonitor.id, kDevice})) {
                events.push_back(std::move(event));
            }
        }
    }
    return events;
}

void PhoneUnderLoad::deliver(const std::vector<host::PhoneEvent>& events) {
    m_phone.clock.advance(2);
    m_phone.database.forgetRequests();
    for (const host::PhoneEvent& event : events) {
        m_phone.service().deliverEvent(event.event.get());
    }
}

std::string PhoneUnderLoad::respond(const std::string& request) {
    if (request.find(Helper::READREQUEST) != std::string::npos) {
        return m_phone.database.carryOut(request);
    }
    return journalxml::buildUpdateResponse(Helper::DAS_CALLLOGRECEIVEDCALLS, std::to_string(++m_lastId));
}

}  // namespace bench
