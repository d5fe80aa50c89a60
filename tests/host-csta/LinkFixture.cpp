#include "tests/host-csta/LinkFixture.h"

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAResponses.h"
#include "platform/csta/CSTASystemEvents.h"
#include "tests/host-csta/EventTexts.h"

namespace linktest {

namespace {

std::string describe(const CSTAEvent& event) {
    if (const auto* status = dynamic_cast<const CSTASystemStatusEvent*>(&event)) {
        return "Status " + status->getSystemStatus();
    }
    if (const auto* devices = dynamic_cast<const CSTASwitchingFunctionDevices*>(&event)) {
        std::string text = "Devices";
        for (std::size_t i = 1; i <= devices->getNumberOfDevices(); ++i) {
            text += ' ' + std::to_string(devices->getDeviceType(i)) + ' ' + devices->getDeviceID(i);
        }
        return text;
    }
    std::string text = nameOf(event);
    if (const auto* call = dynamic_cast<const CSTACallControlEvent*>(&event)) {
        const CSTADevice& caller = call->getCallingDevice();
        text += caller.number.empty() ? "" : " from " + caller.number;
        text += caller.name.empty() ? "" : " " + caller.name;
    }
    return text;
}

}  // namespace

void Phone::deliverEvent(CSTAEvent* event) {
    EXPECT_TRUE(m_strand.isCurrent());
    if (m_action) {
        m_action(*event);
    }
    const std::lock_guard lock(m_mutex);
    m_events.push_back(describe(*event));
    m_changed.notify_all();
}

std::vector<std::string> Phone::events() const {
    const std::lock_guard lock(m_mutex);
    return m_events;
}

std::vector<std::string> Phone::await(std::size_t number) const {
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, kPatience, [&] { return m_events.size() >= number; });
    return m_events;
}

LinkTest::~LinkTest() {
    link.reset();
    strand.drain();  // what the link posted before it ended
}

host::CstaLinkConfig LinkTest::configFor(unsigned short port) {
    host::CstaLinkConfig config;
    config.port = port;
    config.reconnectFirst = std::chrono::milliseconds(10);
    config.reconnectMax = std::chrono::milliseconds(50);
    return config;
}

void LinkTest::startLink(const host::CstaLinkConfig& config) {
    link = std::make_unique<host::CstaLink>(
        config, [this](std::function<void()> work) { strand.post(std::move(work)); });
    link->setStatusListener([this](host::CstaLink::Status status) {
        const std::lock_guard lock(m_mutex);
        m_statuses.push_back(status);
        m_changed.notify_all();
    });
    link->start();
}

template <typename Response>
std::string LinkTest::send(CSTARequest& request, Phone& service) {
    request.setSourceService(&service);
    link->request(request);
    const CSTAResponse* response = request.getResponse();
    if (request.getResponseCode() != 0 || response == nullptr) {
        const bool none = request.getResponseCode() != 0 && response == nullptr;
        return none ? "no answer" : "half an answer";
    }
    if (dynamic_cast<const Response*>(response) == nullptr) {
        return "another answer";
    }
    if (response->isErrorResponse()) {
        return "refused " + response->getErrorValue();
    }
    const auto* start = dynamic_cast<const CSTAMonitorStartResponse*>(response);
    return start == nullptr ? "ok" : "ok " + start->GetMonitorCrossRefID();
}

std::string LinkTest::startMonitor(const std::string& device, const CSTAMonitorFilter& filter) {
    CSTAMonitorStartRequest request;
    request.setCSTAEventIfc(&phone);
    request.setDeviceObject(device);
    request.setRequestedMonitorFilter(filter);
    return send<CSTAMonitorStartResponse>(request, phone);
}

std::string LinkTest::stopMonitor(const std::string& crossRefId) {
    CSTAMonitorStopRequest request;
    request.setMonitorCrossRefID(crossRefId);
    return send<CSTAMonitorStopResponse>(request, phone);
}

std::string LinkTest::changeFilter(const std::string& device, const CSTAMonitorFilter& filter) {
    CSTAChangeMonitorFilterRequest request;
    request.setCSTAEventIfc(&phone);
    request.setDeviceObject(device);
    request.setRequestedFilterList(filter);
    return send<CSTAChangeMonitorFilterResponse>(request, phone);
}

std::string LinkTest::escape(int action) {
    CallLogEntryRequest entry;
    entry.action = action;
    CSTAEscapeRequest request;
    request.setCallLogEntry(&entry);
    return send<CSTAEscapeResponse>(request, phone);
}

std::string LinkTest::registerForStatus(Phone& service) {
    CSTASystemStatusRequest request;
    return send<CSTASystemStatusResponse>(request, service);
}

bool LinkTest::awaitStatus(bool connected, bool monitoring) {
    const host::CstaLink::Status wanted{connected, monitoring};
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, kPatience, [&] {
        while (!m_statuses.empty()) {
            const host::CstaLink::Status passed = m_statuses.front();
            m_statuses.pop_front();
            if (passed == wanted) {
                return true;
            }
        }
        return false;
    });
}

}  // namespace linktest
