#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>

#include "host/csta/DeviceInquiry.h"
#include "platform/csta/CSTASystemEvents.h"
#include "tests/host-csta/BarePeer.h"
#include "tests/host-csta/LinkFixture.h"
#include "tests/support/CapturedLog.h"

namespace {

using journaltest::CapturedLog;
using linktest::BarePeer;
using linktest::LinkTest;
using linktest::Phone;
using testing::ElementsAre;
using testing::HasSubstr;

std::string delivered(const std::string& monitor, const std::string& caller) {
    return "<DeliveredEvent><monitorCrossRefID>" + monitor +
           "</monitorCrossRefID><connection><callID>7</callID><deviceID>2001</deviceID></connection>"
           "<callingDevice><deviceIdentifier>" +
           caller + "</deviceIdentifier></callingDevice><cause>newCall</cause></DeliveredEvent>";
}

std::string frame(int id, const std::string& xml) {
    return host::encodeFrame(id, xml).value();
}

class CstaLinkPeer : public LinkTest {
protected:
    /// A link whose own line is monitored at the peer under the id "77". No other request of it has an answer.
    void startMonitored() {
        startLink(configFor(peer.port()));
        std::future<std::string> accepted = std::async(std::launch::async, [this] { return startMonitor(); });
        peer.accept();
        peer.greet();
        peer.startMonitor("77");
        EXPECT_EQ(accepted.get(), "ok M1");
        EXPECT_TRUE(awaitStatus(true, true));
    }

    BarePeer peer;
};

TEST_F(CstaLinkPeer, AnswersEveryRequestOfTheSwitch) {
    startMonitored();
    peer.send(0, "<SystemStatus><systemStatus>enabled</systemStatus></SystemStatus>");
    EXPECT_EQ(peer.expect("SystemStatusResponse"), 0);
    peer.send(18, "<RequestSystemStatus/>");
    EXPECT_EQ(peer.expect("RequestSystemStatusResponse"), 18);
    EXPECT_THAT(peer.lastXml(), HasSubstr("<systemStatus>normal</systemStatus>"));
    peer.send(0, "<keepalive/>");
    peer.send(19, "<MakeCoffee/>");
    EXPECT_EQ(peer.expect("CSTAErrorCode"), 19);
    EXPECT_THAT(peer.lastXml(), HasSubstr("<operation>serviceNotSupported</operation>"));
    peer.send(20, "<SystemRegisterAbort><sysStatRegisterID>1</sysStatRegisterID></SystemRegisterAbort>");
    const int id = peer.expect("SystemRegister");
    EXPECT_THAT(peer.lastXml(), HasSubstr("switchingFunctionDevicesChanged"));
    peer.send(id, "<CSTAErrorCode><operation>parameterNotSupported</operation></CSTAErrorCode>");
    peer.expect("SystemRegister");
    EXPECT_THAT(peer.lastXml(), testing::Not(HasSubstr("switchingFunctionDevicesChanged")));
    EXPECT_EQ(registerForStatus(phone), "refused serviceNotSupported");

    // The numbers of the two sides have nothing to do with each other.
    std::future<std::string> stopped = std::async(std::launch::async, [this] { return stopMonitor("M1"); });
    const int own = peer.expect("MonitorStop");
    peer.send(own, "<SystemStatus/>");
    EXPECT_EQ(peer.expect("SystemStatusResponse"), own);
    peer.send(own + 1, "<MonitorStopResponse/>");  // nobody waits for this one
    peer.send(own, "<MonitorStopResponse/>");
    EXPECT_EQ(stopped.get(), "ok");
    EXPECT_TRUE(CapturedLog::contains("MonitorStopResponse with id " + std::to_string(own + 1)));
}

TEST_F(CstaLinkPeer, StartsAMonitorAgainThatTheSwitchStops) {
    startMonitored();
    peer.send(5, "<MonitorStop><monitorCrossRefID>77</monitorCrossRefID></MonitorStop>");
    EXPECT_EQ(peer.expect("MonitorStopResponse"), 5);
    EXPECT_TRUE(awaitStatus(true, false));
    peer.startMonitor("78");
    EXPECT_TRUE(awaitStatus(true, true));
    peer.send(9999, delivered("77", "4711"));
    peer.send(9999, delivered("78", "4712"));
    EXPECT_THAT(phone.await(1), ElementsAre("Delivered from 4712"));
}

TEST_F(CstaLinkPeer, WritesByTheSchemaAndDeliversEventsThatComeAheadOfTheAnswer) {
    host::CstaLinkConfig config = configFor(peer.port());
    config.edition = "ed5";
    config.ownDevice = "N<2001>";
    startLink(config);
    peer.accept();
    peer.greet();
    CSTAMonitorFilter filter;
    filter.setHeldFilter(true);
    std::future<std::string> outcome =
        std::async(std::launch::async, [&] { return startMonitor("localDeviceID", filter); });
    const int id = peer.expect("MonitorStart");
    EXPECT_EQ(
        peer.lastXml(),
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><MonitorStart xmlns=\"http://www.ecma-international.org/"
        "standards/ecma-323/csta/ed5\"><monitorObject><deviceObject>N&lt;2001&gt;</deviceObject>"
        "</monitorObject><requestedMonitorFilter><callcontrol><held>true</held></callcontrol>"
        "</requestedMonitorFilter><monitorType>device</monitorType></MonitorStart>");
    const std::string started =
        "<MonitorStartResponse><monitorCrossRefID>5</monitorCrossRefID></MonitorStartResponse>";
    peer.sendBytes(frame(9999, delivered("5", "4711")) + frame(9999, delivered("6", "4799")) +
                   frame(id, started) + frame(9999, delivered("5", "4712")));
    EXPECT_EQ(outcome.get(), "ok M1");
    EXPECT_THAT(phone.await(2), ElementsAre("Delivered from 4711", "Delivered from 4712"));
}

TEST_F(CstaLinkPeer, SurvivesMessagesThatAreNoneAndGivesUpALostStream) {
    startMonitored();
    peer.send(9999, "<DeliveredEvent>");
    peer.sendBytes("garbage");
    peer.send(9999, delivered("77", "4711"));
    EXPECT_THAT(phone.await(1), ElementsAre("Delivered from 4711"));
    peer.sendBytes(std::string(host::FrameReader::kLostBytes + 100, 'x'));
    peer.accept();
    peer.greet();
}

TEST_F(CstaLinkPeer, KeepsTheIdThatTheServiceKnowsOverAReconnect) {
    startMonitored();
    std::string crossRefId;
    phone.onEvent([&crossRefId](const CSTAEvent& event) { crossRefId = event.getMonitorCrossRefID(); });
    peer.hangUp();
    peer.accept();
    peer.greet();
    peer.startMonitor("another-id-of-more-than-nineteen-characters");
    peer.send(9999, delivered("another-id-of-more-than-nineteen-characters", "4711"));
    EXPECT_THAT(phone.await(1), ElementsAre("Delivered from 4711"));
    strand.drain();
    EXPECT_EQ(crossRefId, "M1");
}

TEST_F(CstaLinkPeer, WaitsLongerAndLongerForASwitchThatHangsUpAtOnce) {
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

std::string deviceItem(const std::string& text, const std::string& category = {}) {
    return "<deviceListItem><deviceID>" + text + "</deviceID>" +
           (category.empty() ? "" : "<deviceCategory>" + category + "</deviceCategory>") +
           "</deviceListItem>";
}

std::string segment(const std::string& crossRef, const std::string& items, const char* last = "true") {
    return "<SwitchingFunctionDevices><serviceCrossRefID>" + crossRef + "</serviceCrossRefID><lastSegment>" +
           last + "</lastSegment><deviceList>" + items + "</deviceList></SwitchingFunctionDevices>";
}

constexpr const char* kPromised =
    "<GetSwitchingFunctionDevicesResponse><serviceCrossRefID>x</serviceCrossRefID>"
    "</GetSwitchingFunctionDevicesResponse>";

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
    int askedAgain() {
        peer.send(3, "<SwitchingFunctionDevicesChanged/>");
        EXPECT_EQ(peer.expect("SwitchingFunctionDevicesChangedResponse"), 3);
        return peer.expect("GetSwitchingFunctionDevices");
    }

    static constexpr const char* kConfigured = "Devices 0 localDeviceID 2 2002 2 bluetoothDeviceID";
};

TEST_F(CstaLinkDevices, AreTakenFromEverySegmentOfTheSwitch) {
    startRegistered();
    const int id = peer.greet();
    EXPECT_THAT(peer.lastXml(), HasSubstr("<requestedDeviceID>2001</requestedDeviceID>"));
    peer.sendBytes(frame(1, segment("x", deviceItem("N&lt;2005&gt;Desk", "station"), "false")) +
                   frame(2, segment("y", deviceItem("2999"))) + frame(id, kPromised) +
                   frame(3, segment("x", deviceItem("tel:2001") + deviceItem("8000", "group"), "0")) +
                   frame(4, segment("x", deviceItem("2005") + deviceItem("bluetoothDeviceID", "other"))));
    const std::string told = "Devices 2 2005 0 localDeviceID 1 8000 2 bluetoothDeviceID";
    EXPECT_THAT(phone.await(1), ElementsAre(told));

    Phone other(strand);
    EXPECT_EQ(registerForStatus(other), "ok");
    EXPECT_THAT(other.await(1), ElementsAre(told));
    strand.drain();
    EXPECT_EQ(phone.events().size(), 1U);
    link->releaseService(other);
}

TEST_F(CstaLinkDevices, AreThoseOfTheConfigurationWhereTheSwitchNamesNoneOfThePhone) {
    startRegistered();
    int id = peer.greet();
    std::string directory;
    for (std::size_t i = 0; i <= host::DeviceInquiry::kMostDevices; ++i) {
        directory += deviceItem(std::to_string(3000 + i));
    }
    const std::string refusal = "<CSTAErrorCode><operation>serviceNotSupported</operation></CSTAErrorCode>";
    const std::vector<std::string> answers = {frame(id, refusal),
                                              frame(id + 2, kPromised) + frame(1, segment("x", "")),
                                              frame(id + 4, kPromised) + frame(1, segment("x", directory)),
                                              frame(id + 6, "<MonitorStopResponse/>")};
    std::vector<std::string> expected;
    for (const std::string& answer : answers) {
        peer.sendBytes(answer);
        expected.emplace_back(kConfigured);
        EXPECT_EQ(phone.await(expected.size()), expected);
        // Another list in between, which leaves out the own line.
        peer.sendBytes(frame(askedAgain(), kPromised) + frame(1, segment("x", deviceItem("2009"))));
        expected.emplace_back("Devices 0 localDeviceID 2 2009");
        EXPECT_EQ(phone.await(expected.size()), expected);
        id = askedAgain();
    }
}

TEST_F(CstaLinkDevices, StayAsTheyWereWhenTheSwitchFallsSilent) {
    startRegistered(std::chrono::milliseconds(100));
    peer.greet();
    EXPECT_THAT(phone.await(1), ElementsAre(kConfigured));
    peer.sendBytes(frame(askedAgain(), kPromised) + frame(1, segment("x", deviceItem("2009"))));
    EXPECT_EQ(phone.await(2).size(), 2U);
    peer.sendBytes(frame(askedAgain(), kPromised) + frame(1, segment("x", deviceItem("2010"), "false")));
    peer.send(9, "<RequestSystemStatus/>");
    peer.expect("RequestSystemStatusResponse");
    EXPECT_EQ(startMonitor(),
              "no answer");  // begun later, so it ends later than the wait for the other segment
    EXPECT_TRUE(CapturedLog::contains("they stay as they were"));
    strand.drain();
    EXPECT_EQ(phone.events().size(), 2U);
}

TEST_F(CstaLinkDevices, AreToldAgainWhenTheConnectionIsLostWhileAHandlerMonitorsThem) {
    phone.onEvent([this](const CSTAEvent& event) {
        if (const auto* devices = dynamic_cast<const CSTASwitchingFunctionDevices*>(&event)) {
            for (std::size_t i = 1; i <= devices->getNumberOfDevices(); ++i) {
                static_cast<void>(startMonitor(devices->getDeviceID(i)));
            }
        }
    });
    startRegistered();
    peer.sendBytes(frame(peer.greet(), kPromised) + frame(1, segment("x", deviceItem("2001"))));
    peer.expect("MonitorStart");
    peer.hangUp();
    EXPECT_EQ(phone.await(1).size(), 1U);

    peer.accept();
    peer.sendBytes(frame(peer.greet(), kPromised) + frame(1, segment("x", deviceItem("2001"))));
    peer.startMonitor("77");
    EXPECT_TRUE(awaitStatus(true, true));
    EXPECT_EQ(phone.await(2).back(), "Devices 0 localDeviceID");
}

}  // namespace
