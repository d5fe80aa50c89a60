#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <asio/io_context.hpp>
#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "host/csta/DeviceDiscovery.h"
#include "host/csta/association/SwitchConnection.h"
#include "tests/host/csta/BarePeer.h"
#include "tests/host/csta/LinkFixture.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/Table.h"

namespace {

using journaltest::CapturedLog;
using linktest::BarePeer;
using linktest::delivered;
using linktest::frame;
using linktest::LinkTest;
using linktest::Phone;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(SwitchConnection, ReadsAClosedMessageThatIsOverdueAndLeavesASwitchThatTearsOneOff) {
    BarePeer peer;
    asio::io_context io;
    linktest::TextQueue got;
    host::SwitchConnection connection(io, {.host = "127.0.0.1", .port = peer.port()},
                                      host::ExponentialBackoff(std::chrono::hours(1), std::chrono::hours(1)),
                                      {[] {}, [&got](const host::Frame& each) { got.add(each.xml); },
                                       [&](const std::string& reason) {
                                           got.add(reason);
                                           io.stop();
                                       }},
                                      {std::chrono::milliseconds(50), std::chrono::milliseconds(300)});
    connection.open();
    std::thread reader([&io] { io.run_for(linktest::kPatience); });
    peer.accept();
    std::string tooLong = frame(1, "<A/>");
    tooLong[3] = '\x7F';
    const auto begin = std::chrono::steady_clock::now();
    peer.sendBytes(tooLong);
    EXPECT_THAT(got.await(1), ElementsAre("<A/>"));
    peer.sendBytes(frame(2, "<B></B>").substr(0, 12));
    reader.join();
    EXPECT_THAT(got.await(2), ElementsAre("<A/>", "the rest of a message does not come"));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(350));
    connection.close();
}

class CstaLinkPeer : public LinkTest {
protected:
    /// Starts a link whose own line is monitored at the peer with the id "77". Its other requests get no
    /// response.
    void startMonitored() {
        startLink(configFor(peer.port()));
        std::future<std::string> accepted = std::async(std::launch::async, [this] { return startMonitor(); });
        peer.accept();
        peer.greet();
        peer.startMonitor("77");
        EXPECT_EQ(accepted.get(), "ok M1");
        EXPECT_TRUE(becomes("monitoring"));
    }

    BarePeer peer;
};

TEST_F(CstaLinkPeer, RespondsToEveryRequestOfTheSwitch) {
    startMonitored();
    const std::string rows = R"(
10 | <SystemStatus><systemStatus>enabled</systemStatus></SystemStatus> | SystemStatusResponse |
18 | <RequestSystemStatus/> | RequestSystemStatusResponse | <systemStatus>normal</systemStatus>
19 | <MakeCoffee/>          | CSTAErrorCode               | <operation>serviceNotSupported</operation>
)";
    peer.send(0, "<keepalive/>");
    for (const std::vector<std::string>& row : journaltest::table(4, rows)) {
        peer.send(std::stoi(row[0]), row[1]);
        EXPECT_EQ(peer.expect(row[2]), std::stoi(row[0]));
        EXPECT_THAT(peer.lastXml, HasSubstr(row[3]));
    }
    peer.send(20, "<SystemRegisterAbort/>");
    const int id = peer.expect("SystemRegister");
    EXPECT_THAT(peer.lastXml, HasSubstr("switchingFunctionDevicesChanged"));
    peer.send(id, "<CSTAErrorCode><operation>parameterNotSupported</operation></CSTAErrorCode>");
    peer.expect("SystemRegister");
    EXPECT_THAT(peer.lastXml, testing::Not(HasSubstr("switchingFunctionDevicesChanged")));
    EXPECT_EQ(registerForStatus(phone), "refused serviceNotSupported");

    // The invoke ids of the two sides are independent.
    std::future<std::string> stopped = std::async(std::launch::async, [this] { return stopMonitor("M1"); });
    const int own = peer.expect("MonitorStop");
    peer.send(own, "<SystemStatus/>");
    EXPECT_EQ(peer.expect("SystemStatusResponse"), own);
    peer.send(own + 1, "<MonitorStopResponse/>");  // belongs to no request
    peer.send(own, "<MonitorStopResponse/>");
    EXPECT_EQ(stopped.get(), "ok");
}

TEST_F(CstaLinkPeer, WritesByTheSchemaAndDeliversEventsBeforeTheResponse) {
    host::CstaLinkConfig config = configFor(peer.port());
    config.edition = "ed5";
    config.ownDevice = "N<2001>";
    startLink(config);
    peer.accept();
    peer.greet();
    CSTAMonitorFilter filter;
    filter.setHeldFilter(true);
    filter.setVendorSpecificFilter(true);
    filter.setCallLogEntryFilter(false);
    std::future<std::string> outcome =
        std::async(std::launch::async, [&] { return startMonitor("localDeviceID", filter); });
    const int id = peer.expect("MonitorStart");
    EXPECT_EQ(
        peer.lastXml,
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><MonitorStart xmlns=\"http://www.ecma-international.org/"
        "standards/ecma-323/csta/ed5\"><monitorObject><deviceObject>N&lt;2001&gt;</deviceObject>"
        "</monitorObject><requestedMonitorFilter><callcontrol><held>true</held></callcontrol>"
        "</requestedMonitorFilter><monitorType>device</monitorType></MonitorStart>");
    const std::string started =
        "<MonitorStartResponse><monitorCrossRefID>5</monitorCrossRefID></MonitorStartResponse>";
    peer.sendBytes(delivered("5", "4711") + delivered("6", "4799") + frame(id, started) +
                   delivered("5", "4711"));
    EXPECT_EQ(outcome.get(), "ok M1");
    EXPECT_THAT(phone.events.await(2), ElementsAre("Delivered from 4711", "Delivered from 4711"));
}

TEST_F(CstaLinkPeer, SurvivesInvalidMessagesAndReconnectsAfterALostStream) {
    startMonitored();
    peer.sendBytes(frame(9999, "<DeliveredEvent>") + "garbage" + delivered("77", "4711"));
    EXPECT_THAT(phone.events.await(1), ElementsAre("Delivered from 4711"));
    peer.sendBytes(std::string(host::FrameReader::kLostBytes + 100, 'x'));
    peer.accept();
    peer.greet();
}

TEST_F(CstaLinkPeer, ReconnectsAfterAMessageThatCouldNotBeHandled) {
    startMonitored();
    postFails = true;
    peer.sendBytes(delivered("77", "4711"));
    ASSERT_TRUE(becomes("away"));
    peer.accept();
    peer.greet();
    peer.startMonitor("78");
    peer.sendBytes(delivered("78", "4722"));
    EXPECT_TRUE(phone.events.awaitNext("Delivered from 4722"));
}

TEST_F(CstaLinkPeer, BacksOffFromASwitchThatDisconnectsAtOnce) {
    host::CstaLinkConfig config = configFor(peer.port());
    config.reconnectFirst = std::chrono::milliseconds(1);
    startLink(config);
    const auto begin = std::chrono::steady_clock::now();
    for (int attempt = 0; attempt < 6; ++attempt) {
        peer.accept();
    }
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(1 + 2 + 4 + 8 + 16));
}

// ---- the devices of the phone

/// A SwitchingFunctionDevices message; `devices` with their categories: "N<2005>Desk/station 8000/group".
std::string segment(const std::string& crossRef, const std::string& devices, const char* last = "true") {
    std::string items;
    for (const std::string& device : journaltest::split(devices, ' ')) {
        const std::vector<std::string> parts = journaltest::split(device, '/');
        items += "<deviceListItem><deviceID><![CDATA[" + parts[0] + "]]></deviceID>" +
                 (parts.size() > 1 ? "<deviceCategory>" + parts[1] + "</deviceCategory>" : "") +
                 "</deviceListItem>";
    }
    return frame(1, "<SwitchingFunctionDevices><serviceCrossRefID>" + crossRef +
                        "</serviceCrossRefID><lastSegment>" + last + "</lastSegment><deviceList>" + items +
                        "</deviceList></SwitchingFunctionDevices>");
}

std::string devicesResponse(int id) {
    return frame(id,
                 "<GetSwitchingFunctionDevicesResponse><serviceCrossRefID>x</serviceCrossRefID>"
                 "</GetSwitchingFunctionDevicesResponse>");
}

TEST_F(CstaLinkPeer, CallsAgainWithAServiceWhoseResponseCameAfterTheTimeOut) {
    host::CstaLinkConfig config = configFor(peer.port());
    config.requestTimeout = std::chrono::milliseconds(100);
    startLink(config);
    EXPECT_EQ(registerForStatus(phone), "ok");
    peer.accept();
    peer.greet();
    auto outcome = std::async(std::launch::async, [this] { return link->makeCall("4711").kind; });
    const int id = peer.expect("MakeCall");
    EXPECT_EQ(outcome.get(), host::CallControlOutcome::Kind::eNotSupported);
    EXPECT_FALSE(link->status().callControl);
    peer.send(id, "<MakeCallResponse/>");
    const auto limit = std::chrono::steady_clock::now() + linktest::kPatience;
    while (!link->status().callControl && std::chrono::steady_clock::now() < limit) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_TRUE(link->status().callControl);
}

class CstaLinkDevices : public CstaLinkPeer {
protected:
    void startRegistered(std::chrono::milliseconds timeout = linktest::kPatience) {
        host::CstaLinkConfig config = configFor(peer.port());
        config.sharedDevices = {"2002"};
        config.bluetooth = true;
        config.requestTimeout = timeout;
        startLink(config);
        EXPECT_EQ(registerForStatus(phone), "ok");
        peer.accept();
    }
    int requestDevicesAgain() {
        peer.send(3, "<SwitchingFunctionDevicesChanged/>");
        EXPECT_EQ(peer.expect("SwitchingFunctionDevicesChangedResponse"), 3);
        return peer.expect("GetSwitchingFunctionDevices");
    }

    static constexpr const char* kConfigured = "Devices 0 localDeviceID 2 2002 2 bluetoothDeviceID";
};

TEST_F(CstaLinkDevices, AreThoseOfTheSwitchOrElseTheConfiguredOnes) {
    startRegistered();
    int id = peer.greet();
    EXPECT_THAT(peer.lastXml, HasSubstr("<requestedDeviceID>2001</requestedDeviceID>"));
    peer.sendBytes(segment("x", "N<2005>Desk/station", "false") + segment("y", "2999") + devicesResponse(id) +
                   segment("x", "tel:2001 8000/group", "0") + segment("x", "2005 bluetoothDeviceID/other"));
    std::vector<std::string> expected = {"Devices 2 2005 0 localDeviceID 1 8000 2 bluetoothDeviceID"};
    EXPECT_EQ(phone.events.await(1), expected);
    Phone other(strand);
    EXPECT_EQ(registerForStatus(other), "ok");
    EXPECT_EQ(other.events.await(1), expected);
    link->releaseService(other);

    std::string directory;
    for (std::size_t i = 0; i <= host::DeviceDiscovery::kMaxDevices; ++i) {
        directory += std::to_string(3000 + i) + " ";
    }
    id = requestDevicesAgain();
    for (const std::string& response :
         {frame(id, "<CSTAErrorCode><operation>serviceNotSupported</operation></CSTAErrorCode>"),
          devicesResponse(id + 2) + segment("x", ""), devicesResponse(id + 4) + segment("x", directory),
          frame(id + 6, "<MonitorStopResponse/>")}) {
        peer.sendBytes(response);
        expected.emplace_back(kConfigured);
        EXPECT_EQ(phone.events.await(expected.size()), expected);
        // Another list in between, without the own line.
        peer.sendBytes(devicesResponse(requestDevicesAgain()) + segment("x", "2009"));
        expected.emplace_back("Devices 0 localDeviceID 2 2009");
        EXPECT_EQ(phone.events.await(expected.size()), expected);
        requestDevicesAgain();
    }
}

TEST_F(CstaLinkDevices, StayUnchangedAfterATimeout) {
    startRegistered(std::chrono::milliseconds(100));
    peer.greet();
    EXPECT_THAT(phone.events.await(1), ElementsAre(kConfigured));
    peer.sendBytes(devicesResponse(requestDevicesAgain()) + segment("x", "2009"));
    EXPECT_EQ(phone.events.await(2).size(), 2U);
    peer.sendBytes(devicesResponse(requestDevicesAgain()) + segment("x", "2010", "false"));
    peer.send(9, "<RequestSystemStatus/>");
    peer.expect("RequestSystemStatusResponse");
    // Started later, so its timeout is later than that of the missing segment.
    EXPECT_EQ(startMonitor(), "no response");
    EXPECT_TRUE(CapturedLog::contains("they stay as they were"));
    strand.drain();
    EXPECT_EQ(phone.events.await(2).size(), 2U);
}

TEST_F(CstaLinkDevices, AreDeliveredAgainAfterAFailedMonitorStart) {
    phone.onEvent([this](const CSTAEvent& event) {
        if (const auto* devices = dynamic_cast<const CSTASwitchingFunctionDevices*>(&event)) {
            static_cast<void>(startMonitor(devices->getDeviceID(1)));
        }
    });
    startRegistered();
    peer.sendBytes(devicesResponse(peer.greet()) + segment("x", "2001"));
    peer.expect("MonitorStart");
    peer.hangUp();
    EXPECT_EQ(phone.events.await(1).size(), 1U);

    peer.accept();
    peer.sendBytes(devicesResponse(peer.greet()) + segment("x", "2001"));
    peer.startMonitor("77");
    EXPECT_TRUE(becomes("monitoring"));
    EXPECT_EQ(phone.events.await(2).back(), "Devices 0 localDeviceID");
}

}  // namespace
