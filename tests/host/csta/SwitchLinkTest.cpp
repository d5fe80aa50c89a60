#include "host/csta/association/SwitchLink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <string>
#include <vector>

#include "tests/host/csta/BarePeer.h"
#include "tests/host/csta/LinkFixture.h"

namespace {

using host::SwitchLink;
using linktest::delivered;
using linktest::frame;
using testing::ElementsAre;
using testing::HasSubstr;

/// Two lines, 2001 and 2002, on one link to a switch that the test drives.
class SharedLink : public testing::Test {
protected:
    struct Line {
        Line(SwitchLink& shared, host::WorkerPool& pool, const std::string& device) : strand(pool) {
            host::CstaLinkConfig config;
            config.ownDevice = device;
            link = std::make_unique<host::CstaLink>(
                &shared, config, [this](std::function<void()> work) { strand.post(std::move(work)); });
            link->start();
        }
        ~Line() {
            link.reset();
            strand.drain();
        }
        [[nodiscard]] bool startMonitor() {
            CSTAMonitorStartRequest request;
            request.setCSTAEventIfc(&phone);
            request.setDeviceObject("localDeviceID");
            request.setSourceService(&phone);
            link->request(request);
            return request.getResponse() != nullptr && !request.getResponse()->isErrorResponse();
        }

        host::Strand strand;
        linktest::Phone phone{strand};
        std::unique_ptr<host::CstaLink> link;
    };

    [[nodiscard]] static host::SwitchLinkConfig configFor(unsigned short port) {
        host::SwitchLinkConfig config;
        config.port = port;
        config.reconnectFirst = std::chrono::milliseconds(10);
        return config;
    }
    std::unique_ptr<Line> makeLine(const std::string& device) {
        return std::make_unique<Line>(shared, pool, device);
    }
    /// Starts the line's monitor; `device` is what the switch is asked for.
    void monitor(Line& line, const std::string& device, const std::string& id) {
        std::future<bool> started = std::async(std::launch::async, [&line] { return line.startMonitor(); });
        peer.startMonitor(id);
        EXPECT_THAT(peer.lastXml, HasSubstr("<deviceObject>" + device + "</deviceObject>"));
        EXPECT_TRUE(started.get());
    }

    host::WorkerPool pool{2};
    linktest::BarePeer peer;
    SwitchLink shared{configFor(peer.port())};
};

TEST_F(SharedLink, CarriesTheMonitorsOfItsLinesAndNoMoreThanTheirs) {
    const auto first = makeLine("2001");
    auto second = makeLine("2002");
    shared.start();
    peer.accept();
    peer.greet();  // the switch is registered with once
    EXPECT_THAT(peer.lastXml, HasSubstr("2001"));
    peer.expect("GetSwitchingFunctionDevices");
    EXPECT_THAT(peer.lastXml, HasSubstr("2002"));
    monitor(*first, "2001", "71");
    monitor(*second, "2002", "72");
    peer.sendBytes(delivered("71", "4711") + delivered("72", "4722") + delivered("71", "4712"));
    EXPECT_TRUE(first->phone.events.awaitNext("Delivered from 4711"));
    EXPECT_TRUE(first->phone.events.awaitNext("Delivered from 4712"));
    EXPECT_THAT(second->phone.events.await(1), ElementsAre("Delivered from 4722"));

    // A line that leaves stops its monitor; its requests fail, and the other line goes on.
    std::future<host::CallControlOutcome> call =
        std::async(std::launch::async, [&second] { return second->link->makeCall("4799"); });
    peer.expect("MakeCall");
    std::future<void> left = std::async(std::launch::async, [&second] { second->link->stop(); });
    peer.expect("MonitorStop");
    EXPECT_THAT(peer.lastXml, HasSubstr("72"));
    left.get();
    EXPECT_NE(call.get().kind, host::CallControlOutcome::Kind::eDone);
    peer.sendBytes(delivered("72", "4733") + delivered("71", "4713"));
    EXPECT_TRUE(first->phone.events.awaitNext("Delivered from 4713"));
    second->strand.drain();
    EXPECT_THAT(second->phone.events.await(1), testing::SizeIs(1));
    second.reset();

    // A line that comes later is served at once.
    const auto third = makeLine("2003");
    peer.expect("GetSwitchingFunctionDevices");
    EXPECT_THAT(peer.lastXml, HasSubstr("2003"));
    EXPECT_TRUE(third->link->status().connected);
    monitor(*third, "2003", "73");

    // Two lines whose switch gives both of them one id.
    const auto fourth = makeLine("2003");
    peer.expect("GetSwitchingFunctionDevices");
    monitor(*fourth, "2003", "73");
    peer.sendBytes(delivered("73", "4744"));
    EXPECT_THAT(third->phone.events.await(1), ElementsAre("Delivered from 4744"));
    EXPECT_THAT(fourth->phone.events.await(1), ElementsAre("Delivered from 4744"));
}

TEST_F(SharedLink, DoesNotFloodTheSwitch) {
    constexpr std::size_t kRequests = SwitchLink::kWindow + 50;
    shared.start();
    peer.accept();
    peer.expect("RequestSystemStatus");
    const int registration = peer.expect("SystemRegister");
    std::vector<int> outcomes;
    const auto sendAll = [&](const std::shared_ptr<std::promise<void>>& sent) {
        for (std::size_t i = 0; i < kRequests; ++i) {
            shared.send(nullptr, "<A" + std::to_string(i) + "/>",
                        [&outcomes](const host::SwitchResponse& response) {
                            outcomes.push_back(static_cast<int>(response.kind));
                        });
        }
        sent->set_value();
    };
    const auto sent = std::make_shared<std::promise<void>>();
    ASSERT_TRUE(shared.post([&] { sendAll(sent); }));
    sent->get_future().wait();
    // The first two requests wait, too.
    for (std::size_t i = 0; i < SwitchLink::kWindow - 2; ++i) {
        peer.expect("A" + std::to_string(i));
    }
    peer.send(registration, "<SystemRegisterResponse/>");
    peer.expect("A" + std::to_string(SwitchLink::kWindow - 2));
    peer.send(9, "<RequestSystemStatus/>");
    peer.expect("RequestSystemStatusResponse");  // and no further request before it
    shared.stop();
    EXPECT_EQ(outcomes, std::vector<int>(kRequests, static_cast<int>(host::SwitchResponse::Kind::eLost)));
}

}  // namespace
