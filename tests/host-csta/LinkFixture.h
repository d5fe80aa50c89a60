#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "host/csta/CstaLink.h"
#include "host/framework/Strand.h"
#include "host/framework/WorkerPool.h"
#include "platform/csta/CSTAEventIfc.h"
#include "platform/csta/CSTARequests.h"
#include "platform/framework/Service.h"

namespace linktest {

/// How long a test waits for what must happen.
inline constexpr std::chrono::seconds kPatience{20};

/// A service that keeps the events it is given, as texts: "Delivered from 4711 Ann", "Devices 0 localDeviceID".
class Phone : public Service, public CSTAEventIfc {
public:
    explicit Phone(const host::Strand& strand) : m_strand(strand) {}

    void run() override {}
    void deliverEvent(CSTAEvent* event) override;
    /// Called for each event, on the strand, before it is kept.
    void onEvent(std::function<void(const CSTAEvent&)> action) { m_action = std::move(action); }

    [[nodiscard]] std::vector<std::string> events() const;
    /// The events once there are at least `number`, or all there are when that takes too long.
    [[nodiscard]] std::vector<std::string> await(std::size_t number) const;

private:
    const host::Strand& m_strand;
    std::function<void(const CSTAEvent&)> m_action;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::vector<std::string> m_events;
};

/// A link with its strand and a phone that wants its events; each test starts it when its switch stands ready.
class LinkTest : public testing::Test {
public:
    LinkTest() = default;
    LinkTest(const LinkTest&) = delete;
    LinkTest& operator=(const LinkTest&) = delete;
    ~LinkTest() override;

protected:
    /// Quick pauses, so that a test of many attempts is over soon.
    [[nodiscard]] static host::CstaLinkConfig configFor(unsigned short port);
    void startLink(const host::CstaLinkConfig& config);

    /// What came back from a request: "ok", with the id of a monitor that was started "ok M1"; "refused generic"; "another
    /// answer"; "no answer".
    [[nodiscard]] std::string startMonitor(const std::string& device = "localDeviceID",
                                           const CSTAMonitorFilter& filter = {});
    [[nodiscard]] std::string stopMonitor(const std::string& crossRefId);
    [[nodiscard]] std::string changeFilter(const std::string& device, const CSTAMonitorFilter& filter);
    [[nodiscard]] std::string escape(int action);
    [[nodiscard]] std::string registerForStatus(Phone& service);

    /// Waits until the link's status is, or has passed through, this one since it was last asked.
    [[nodiscard]] bool awaitStatus(bool connected, bool monitoring);

    host::WorkerPool pool{2};
    host::Strand strand{pool};
    Phone phone{strand};
    std::unique_ptr<host::CstaLink> link;

private:
    template <typename Response>
    [[nodiscard]] std::string send(CSTARequest& request, Phone& service);

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<host::CstaLink::Status> m_statuses;
};

}  // namespace linktest
