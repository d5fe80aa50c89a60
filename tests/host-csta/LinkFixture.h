#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "host/csta/CstaLink.h"
#include "platform/csta/CSTAEventIfc.h"
#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAResponses.h"
#include "platform/framework/Service.h"

namespace linktest {

/// How long a test waits for what must happen.
inline constexpr std::chrono::seconds kPatience{20};

/// The line's strand: runs what is posted on one thread, in order.
class Strand {
public:
    Strand();
    ~Strand();
    void post(std::function<void()> work);
    /// Runs `work` on the strand and waits until it is done.
    void run(const std::function<void()>& work);
    [[nodiscard]] bool isHere() const { return std::this_thread::get_id() == m_thread.get_id(); }

private:
    void loop();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_queue;
    bool m_ending = false;
    std::thread m_thread;
};

/// A service that keeps the events it is given, as texts: "Delivered c1 <- 4711 Ann".
class Phone : public Service, public CSTAEventIfc {
public:
    explicit Phone(const Strand& strand) : m_strand(strand) {}

    void run() override {}
    void deliverEvent(CSTAEvent* event) override;
    /// Called for each event, on the strand, before it is kept.
    void onEvent(std::function<void(const CSTAEvent&)> action) { m_action = std::move(action); }

    [[nodiscard]] std::vector<std::string> events() const;
    /// The events once there are at least `number`, or all there are when that takes too long.
    [[nodiscard]] std::vector<std::string> await(std::size_t number) const;

private:
    const Strand& m_strand;
    std::function<void(const CSTAEvent&)> m_action;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::vector<std::string> m_events;
};

/// What came back from a request.
struct Outcome {
    int code = -99;
    bool hasResponse = false;
    bool isExpectedClass = false;
    bool isError = false;
    std::string errorValue;
    /// Of a monitor that was started.
    std::string crossRefId;

    [[nodiscard]] bool succeeded() const { return code == 0 && isExpectedClass && !isError; }
};

/// A link with its strand and a phone that wants its events; each test starts it when its switch stands ready.
class LinkTest : public testing::Test {
public:
    LinkTest();
    LinkTest(const LinkTest&) = delete;
    LinkTest& operator=(const LinkTest&) = delete;
    ~LinkTest() override;

protected:
    /// Quick pauses, so that a test of many attempts is over soon.
    [[nodiscard]] static host::CstaLinkConfig configFor(unsigned short port);
    void startLink(const host::CstaLinkConfig& config);

    [[nodiscard]] Outcome startMonitor(const std::string& device = "localDeviceID",
                                       const CSTAMonitorFilter& filter = {});
    [[nodiscard]] Outcome stopMonitor(const std::string& crossRefId);
    [[nodiscard]] Outcome changeFilter(const std::string& device, const CSTAMonitorFilter& filter);
    [[nodiscard]] Outcome registerForStatus();

    /// Waits until the link's status is, or has passed through, this one since it was last asked.
    [[nodiscard]] bool awaitStatus(bool connected, bool monitoring);

    Strand strand;
    Phone phone{strand};
    std::unique_ptr<host::CstaLink> link;

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<host::CstaLink::Status> m_statuses;
};

}  // namespace linktest
