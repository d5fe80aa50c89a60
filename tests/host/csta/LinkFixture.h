#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "host/csta/CstaLink.h"
#include "host/framework/Strand.h"
#include "host/framework/WorkerPool.h"
#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAEventIfc.h"
#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAResponses.h"
#include "platform/csta/CSTASystemEvents.h"
#include "platform/csta/CallLogEntryRequest.h"
#include "platform/framework/Service.h"
#include "tests/support/EventName.h"
#include "tests/support/WirePeer.h"

namespace linktest {

/// Texts that one thread adds and another waits for.
class TextQueue {
public:
    void add(std::string text) {
        const std::lock_guard lock(m_mutex);
        m_texts.push_back(std::move(text));
        m_changed.notify_all();
    }
    /// Waits for at least `number` texts, up to the timeout, and returns all.
    [[nodiscard]] std::vector<std::string> await(std::size_t number) const {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, kPatience, [&] { return m_texts.size() >= number; });
        return m_texts;
    }
    /// Waits for that text after the texts of earlier calls.
    [[nodiscard]] bool awaitNext(const std::string& text) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, kPatience, [&] {
            const auto passed = m_texts.begin() + m_passed;
            const auto found = std::find(passed, m_texts.end(), text);
            m_passed = found - m_texts.begin() + (found == m_texts.end() ? 0 : 1);
            return found != m_texts.end();
        });
    }

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::vector<std::string> m_texts;
    std::ptrdiff_t m_passed = 0;
};

/// A service that stores its events as texts: "Delivered from 4711", "Devices 0 localDeviceID".
class Phone : public Service, public CSTAEventIfc {
public:
    explicit Phone(const host::Strand& strand) : m_strand(strand) {}

    void run() override {}
    void deliverEvent(CSTAEvent* event) override {
        EXPECT_TRUE(m_strand.isCurrent());
        if (m_action) {
            m_action(*event);
        }
        std::string text = journaltest::nameOf(*event);
        if (const auto* status = dynamic_cast<const CSTASystemStatusEvent*>(event)) {
            text = "Status " + status->getSystemStatus();
        } else if (const auto* devices = dynamic_cast<const CSTASwitchingFunctionDevices*>(event)) {
            text = "Devices";
            for (std::size_t i = 1; i <= devices->getNumberOfDevices(); ++i) {
                text += ' ' + std::to_string(devices->getDeviceType(i)) + ' ' + devices->getDeviceID(i);
            }
        } else if (const auto* call = dynamic_cast<const CSTACallControlEvent*>(event)) {
            const std::string& caller = call->getCallingDevice().number;
            text += caller.empty() ? "" : " from " + caller;
        }
        events.add(text);
    }
    /// `action` is called for each event, on the strand, before it is stored.
    void onEvent(std::function<void(const CSTAEvent&)> action) { m_action = std::move(action); }

    TextQueue events;

private:
    const host::Strand& m_strand;
    std::function<void(const CSTAEvent&)> m_action;
};

/// A link with its strand and a phone that receives its events. Each test starts the link when its switch is
/// ready. A request returns its result as text: "ok", or "ok M1" with the id of a started monitor; "refused
/// generic"; "wrong response"; "no response".
class LinkTest : public testing::Test {
public:
    ~LinkTest() override {
        link.reset();
        strand.drain();  // what the link posted before it ended
    }

protected:
    /// Short delays between connection attempts.
    [[nodiscard]] static host::CstaLinkConfig configFor(unsigned short port) {
        host::CstaLinkConfig config;
        config.port = port;
        config.reconnectFirst = std::chrono::milliseconds(10);
        config.reconnectMax = std::chrono::milliseconds(50);
        return config;
    }
    void startLink(const host::CstaLinkConfig& config) {
        const auto failing = [this](auto post) {
            return [this, post](std::function<void()> work) {
                if (postFails.exchange(false)) {
                    throw std::bad_alloc();
                }
                post(std::move(work));
            };
        };
        const host::Strand::Helper helper = strand.helper();
        link = std::make_unique<host::CstaLink>(
            config, failing([this](std::function<void()> work) { strand.post(std::move(work)); }),
            host::CstaLink::PostHere{.queue = failing(helper.queue), .run = helper.run});
        link->setStatusListener([this](host::CstaLink::Status status) {
            m_statuses.add(status.monitoring ? "monitoring" : status.connected ? "connected" : "away");
        });
        link->start();
    }
    /// Waits until the link has, or has had, that status since the last call: "away", "connected" (but not
    /// monitoring) or "monitoring".
    [[nodiscard]] bool becomes(const std::string& status) { return m_statuses.awaitNext(status); }

    [[nodiscard]] std::string startMonitor(const std::string& device = "localDeviceID",
                                           const CSTAMonitorFilter& filter = {}) {
        CSTAMonitorStartRequest request;
        request.setCSTAEventIfc(&phone);
        request.setDeviceObject(device);
        request.setRequestedMonitorFilter(filter);
        return send<CSTAMonitorStartResponse>(request, phone);
    }
    [[nodiscard]] std::string stopMonitor(const std::string& crossRefId) {
        CSTAMonitorStopRequest request;
        request.setMonitorCrossRefID(crossRefId);
        return send<CSTAMonitorStopResponse>(request, phone);
    }
    [[nodiscard]] std::string changeFilter(const std::string& device, const CSTAMonitorFilter& filter) {
        CSTAChangeMonitorFilterRequest request;
        request.setCSTAEventIfc(&phone);
        request.setDeviceObject(device);
        request.setRequestedFilterList(filter);
        return send<CSTAChangeMonitorFilterResponse>(request, phone);
    }
    /// Requests the deletion of a missed call of that number.
    [[nodiscard]] std::string requestDeletion(const std::string& number) {
        CallLogEntryRequest entry;
        entry.action = CallLogEntryRequest::eDeleteOne;
        entry.logTarget = CallLogEntryEvent::eMissed;
        entry.subscriberNumber = number;
        CSTAEscapeRequest request;
        request.setCallLogEntry(&entry);
        return send<CSTAEscapeResponse>(request, phone);
    }
    [[nodiscard]] std::string registerForStatus(Phone& service) {
        CSTASystemStatusRequest request;
        return send<CSTASystemStatusResponse>(request, service);
    }

    host::WorkerPool pool{2};
    host::Strand strand{pool};
    Phone phone{strand};
    std::unique_ptr<host::CstaLink> link;
    /// The next event cannot be handed over, as without free memory.
    std::atomic<bool> postFails{false};

private:
    template <typename Response>
    [[nodiscard]] std::string send(CSTARequest& request, Phone& service) {
        request.setSourceService(&service);
        link->request(request);
        const CSTAResponse* response = request.getResponse();
        if ((request.getResponseCode() != 0) != (response == nullptr)) {
            return "half a response";
        }
        if (response == nullptr) {
            return "no response";
        }
        if (dynamic_cast<const Response*>(response) == nullptr) {
            return "wrong response";
        }
        if (response->isErrorResponse()) {
            return "refused " + response->getErrorValue();
        }
        const auto* start = dynamic_cast<const CSTAMonitorStartResponse*>(response);
        return start == nullptr ? "ok" : "ok " + start->GetMonitorCrossRefID();
    }

    TextQueue m_statuses;
};

}  // namespace linktest
