#include "tests/host-csta/LinkFixture.h"

#include <future>
#include <map>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAEvent.h"
#include "platform/csta/CSTASystemEvents.h"

namespace linktest {

// ---- Strand

Strand::Strand() : m_thread([this] { loop(); }) {}

Strand::~Strand() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void Strand::post(std::function<void()> work) {
    {
        const std::lock_guard lock(m_mutex);
        m_queue.push_back(std::move(work));
    }
    m_changed.notify_all();
}

void Strand::run(const std::function<void()>& work) {
    std::promise<void> done;
    post([&] {
        work();
        done.set_value();
    });
    done.get_future().wait();
}

void Strand::loop() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_ending || !m_queue.empty(); });
        if (m_queue.empty()) {
            return;
        }
        const std::function<void()> work = std::move(m_queue.front());
        m_queue.pop_front();
        lock.unlock();
        work();
        lock.lock();
    }
}

// ---- Phone

namespace {

std::string kindOf(const CSTAEvent& event) {
    static const std::map<CSTAEventCode, std::string> names = {
        {CSTAEventCode::eServiceInitiated, "ServiceInitiated"},
        {CSTAEventCode::eOriginated, "Originated"},
        {CSTAEventCode::eDelivered, "Delivered"},
        {CSTAEventCode::eDiverted, "Diverted"},
        {CSTAEventCode::eEstablished, "Established"},
        {CSTAEventCode::eHeld, "Held"},
        {CSTAEventCode::eRetrieved, "Retrieved"},
        {CSTAEventCode::eFailed, "Failed"},
        {CSTAEventCode::eConnectionCleared, "Cleared"},
        {CSTAEventCode::eSystemStatus, "Status"},
    };
    const auto found = names.find(event.getType());
    return found == names.end() ? "Other" : found->second;
}

std::string describe(const CSTAEvent& event) {
    if (const auto* status = dynamic_cast<const CSTASystemStatusEvent*>(&event)) {
        return "Status " + status->getSystemStatus();
    }
    std::string text = kindOf(event);
    if (const auto* call = dynamic_cast<const CSTACallControlEvent*>(&event)) {
        const CSTADevice& caller = call->getCallingDevice();
        text += caller.number.empty() ? "" : " from " + caller.number;
        text += caller.name.empty() ? "" : " " + caller.name;
    }
    return text;
}

}  // namespace

void Phone::deliverEvent(CSTAEvent* event) {
    EXPECT_TRUE(m_strand.isHere());
    if (event == nullptr) {
        ADD_FAILURE() << "a null event";
        return;
    }
    if (m_action) {
        m_action(*event);
    }
    {
        const std::lock_guard lock(m_mutex);
        m_events.push_back(describe(*event));
    }
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

// ---- LinkTest

namespace {

template <typename Response>
Outcome outcomeOf(const CSTARequest& request) {
    const CSTAResponse* response = request.getResponse();
    Outcome outcome;
    outcome.code = request.getResponseCode();
    outcome.hasResponse = response != nullptr;
    outcome.isExpectedClass = dynamic_cast<const Response*>(response) != nullptr;
    outcome.isError = response != nullptr && response->isErrorResponse();
    outcome.errorValue = response != nullptr ? response->getErrorValue() : "";
    if (const auto* start = dynamic_cast<const CSTAMonitorStartResponse*>(response)) {
        outcome.crossRefId = start->GetMonitorCrossRefID();
    }
    return outcome;
}

}  // namespace

LinkTest::LinkTest() = default;

LinkTest::~LinkTest() {
    link.reset();
    strand.run([] {});  // what the link posted before it ended
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
        {
            const std::lock_guard lock(m_mutex);
            m_statuses.push_back(status);
        }
        m_changed.notify_all();
    });
    link->start();
}

Outcome LinkTest::startMonitor(const std::string& device, const CSTAMonitorFilter& filter) {
    CSTAMonitorStartRequest request;
    request.setSourceService(&phone);
    request.setCSTAEventIfc(&phone);
    request.setDeviceObject(device);
    request.setRequestedMonitorFilter(filter);
    link->request(request);
    return outcomeOf<CSTAMonitorStartResponse>(request);
}

Outcome LinkTest::stopMonitor(const std::string& crossRefId) {
    CSTAMonitorStopRequest request;
    request.setSourceService(&phone);
    request.setMonitorCrossRefID(crossRefId);
    link->request(request);
    return outcomeOf<CSTAMonitorStopResponse>(request);
}

Outcome LinkTest::changeFilter(const std::string& device, const CSTAMonitorFilter& filter) {
    CSTAChangeMonitorFilterRequest request;
    request.setSourceService(&phone);
    request.setCSTAEventIfc(&phone);
    request.setDeviceObject(device);
    request.setRequestedFilterList(filter);
    link->request(request);
    return outcomeOf<CSTAChangeMonitorFilterResponse>(request);
}

Outcome LinkTest::registerForStatus() {
    CSTASystemStatusRequest request;
    request.setSourceService(&phone);
    link->request(request);
    return outcomeOf<CSTASystemStatusResponse>(request);
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
