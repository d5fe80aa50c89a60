#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>

#include "platform/csta/CSTAEvent.h"
#include "tests/host-csta/BarePeer.h"
#include "tests/host-csta/LinkFixture.h"
#include "tests/support/CapturedLog.h"

namespace {

using journaltest::CapturedLog;
using linktest::BarePeer;
using linktest::LinkTest;
using linktest::Outcome;
using testing::ElementsAre;
using testing::HasSubstr;

std::string delivered(const std::string& monitor, const std::string& caller) {
    return "<DeliveredEvent><monitorCrossRefID>" + monitor +
           "</monitorCrossRefID><connection><callID>7</callID><deviceID>2001</deviceID></connection>"
           "<alertingDevice><deviceIdentifier>2001</deviceIdentifier></alertingDevice>"
           "<callingDevice><deviceIdentifier>" +
           caller + "</deviceIdentifier></callingDevice><cause>newCall</cause></DeliveredEvent>";
}

std::string cleared(const std::string& monitor) {
    return "<ConnectionClearedEvent><monitorCrossRefID>" + monitor +
           "</monitorCrossRefID><droppedConnection><callID>7</callID><deviceID>2001</deviceID></"
           "droppedConnection>"
           "<cause>normalClearing</cause></ConnectionClearedEvent>";
}

std::string frame(int id, const std::string& xml) {
    return host::encodeFrame(id, xml).value();
}

class CstaLinkPeer : public LinkTest {
protected:
    /// A link whose own line is monitored at the peer under the id "77".
    void startMonitored() {
        startLink(configFor(peer.port()));
        // Accepted at once or sent to the peer, whichever comes first; the peer answers in the meantime.
        std::future<Outcome> started = std::async(std::launch::async, [this] { return startMonitor(); });
        peer.accept();
        peer.startMonitor("77");
        EXPECT_TRUE(started.get().succeeded());
        EXPECT_TRUE(awaitStatus(true, true));
    }

    BarePeer peer;
};

TEST_F(CstaLinkPeer, WaitsForNoAnswerBeforeItMonitors) {
    startMonitored();
    peer.send(9999, delivered("77", "4711"));
    peer.send(9999, cleared("77"));
    EXPECT_THAT(phone.await(2), ElementsAre("Delivered from 4711", "Cleared"));
}

TEST_F(CstaLinkPeer, ReadsEventsSplitAndMergedOverSegments) {
    startMonitored();
    const std::string both =
        frame(9999, delivered("77", "N&lt;4711&gt;Ann M\xC3\xBCller")) + frame(9999, cleared("77"));
    peer.sendBytes(both);
    for (const char byte : both) {
        peer.sendBytes(std::string_view(&byte, 1));
    }
    EXPECT_THAT(phone.await(4), ElementsAre("Delivered from 4711 Ann M\xC3\xBCller", "Cleared",
                                            "Delivered from 4711 Ann M\xC3\xBCller", "Cleared"));
}

TEST_F(CstaLinkPeer, AnswersASwitchThatSpeaksFirst) {
    startLink(configFor(peer.port()));
    peer.accept();
    peer.send(0, "<SystemStatus><systemStatus>enabled</systemStatus></SystemStatus>");
    peer.expect("RequestSystemStatus");
    peer.expect("SystemRegister");
    EXPECT_EQ(peer.expect("SystemStatusResponse"), 0);
}

TEST_F(CstaLinkPeer, AnswersEveryRequestOfTheSwitch) {
    startMonitored();
    peer.send(17, "<SystemStatus/>");
    EXPECT_EQ(peer.expect("SystemStatusResponse"), 17);
    peer.send(18, "<RequestSystemStatus/>");
    EXPECT_EQ(peer.expect("RequestSystemStatusResponse"), 18);
    EXPECT_THAT(peer.lastXml(), HasSubstr("<systemStatus>normal</systemStatus>"));
    peer.send(0, "<keepalive/>");
    peer.send(19, "<MakeCoffee/>");
    EXPECT_EQ(peer.expect("CSTAErrorCode"), 19);
    EXPECT_THAT(peer.lastXml(), HasSubstr("<operation>serviceNotSupported</operation>"));
    peer.send(20, "<SystemRegisterAbort><sysStatRegisterID>1</sysStatRegisterID></SystemRegisterAbort>");
    peer.expect("SystemRegister");
}

TEST_F(CstaLinkPeer, StartsAMonitorAgainThatTheSwitchStops) {
    startMonitored();
    peer.send(5, "<MonitorStop><monitorCrossRefID>77</monitorCrossRefID></MonitorStop>");
    EXPECT_EQ(peer.expect("MonitorStopResponse"), 5);
    EXPECT_TRUE(awaitStatus(true, false));
    const int id = peer.expect("MonitorStart");
    peer.send(id, "<MonitorStartResponse><monitorCrossRefID>78</monitorCrossRefID></MonitorStartResponse>");
    EXPECT_TRUE(awaitStatus(true, true));
    peer.send(9999, delivered("77", "4711"));
    peer.send(9999, delivered("78", "4712"));
    EXPECT_THAT(phone.await(1), ElementsAre("Delivered from 4712"));
}

TEST_F(CstaLinkPeer, DeliversEventsThatComeAheadOfTheAnswer) {
    startLink(configFor(peer.port()));
    peer.accept();
    peer.expect("RequestSystemStatus");
    peer.expect("SystemRegister");
    std::future<Outcome> started = std::async(std::launch::async, [this] { return startMonitor(); });
    const int id = peer.expect("MonitorStart");
    peer.sendBytes(
        frame(9999, delivered("5", "4711")) + frame(9999, delivered("6", "4799")) +
        frame(9999, cleared("5")) +
        frame(id, "<MonitorStartResponse><monitorCrossRefID>5</monitorCrossRefID></MonitorStartResponse>") +
        frame(9999, delivered("5", "4712")));
    EXPECT_TRUE(started.get().succeeded());
    EXPECT_THAT(phone.await(3), ElementsAre("Delivered from 4711", "Cleared", "Delivered from 4712"));
}

TEST_F(CstaLinkPeer, TellsItsOwnInvokeIdsFromThoseOfTheSwitch) {
    startMonitored();
    std::future<Outcome> stopped = std::async(std::launch::async, [this] { return stopMonitor("M1"); });
    const int id = peer.expect("MonitorStop");
    peer.send(id, "<SystemStatus><systemStatus>normal</systemStatus></SystemStatus>");
    EXPECT_EQ(peer.expect("SystemStatusResponse"), id);
    peer.send(id + 1, "<MonitorStopResponse/>");  // nobody waits for this one
    peer.send(id, "<MonitorStopResponse/>");
    EXPECT_TRUE(stopped.get().succeeded());
    EXPECT_TRUE(CapturedLog::contains("MonitorStopResponse with id " + std::to_string(id + 1)));
}

TEST_F(CstaLinkPeer, SurvivesMessagesThatAreNone) {
    startMonitored();
    peer.send(9999, "hello");
    peer.sendBytes(
        std::string("\1\0\0\x0C"
                    "0001<A/>garbage\0\0\0\3",
                    23));
    peer.send(9999, "<DeliveredEvent>");
    peer.send(9999, delivered("77", "4711"));
    EXPECT_THAT(phone.await(1), ElementsAre("Delivered from 4711"));
    EXPECT_EQ(CapturedLog::count("connected to the switch"), 1) << CapturedLog::dump();
}

TEST_F(CstaLinkPeer, GivesUpAStreamThatIsLost) {
    startMonitored();
    peer.sendBytes(std::string(host::FrameReader::kLostBytes + 100, 'x'));
    peer.accept();
    peer.startMonitor("79");
    EXPECT_TRUE(awaitStatus(true, true));
}

TEST_F(CstaLinkPeer, KeepsTheIdThatTheServiceKnowsOverAReconnect) {
    startMonitored();
    std::string crossRefId;
    phone.onEvent([&crossRefId](const CSTAEvent& event) { crossRefId = event.getMonitorCrossRefID(); });
    peer.hangUp();
    peer.accept();
    peer.startMonitor("another-id-of-more-than-nineteen-characters");
    peer.send(9999, delivered("another-id-of-more-than-nineteen-characters", "4711"));
    EXPECT_THAT(phone.await(1), ElementsAre("Delivered from 4711"));
    strand.run([&] { EXPECT_EQ(crossRefId, "M1"); });
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
    peer.expect("RequestSystemStatus");
}

TEST_F(CstaLinkPeer, WritesByTheSchemaInTheConfiguredEdition) {
    host::CstaLinkConfig config = configFor(peer.port());
    config.edition = "ed5";
    config.ownDevice = "N<2001>";
    startLink(config);
    peer.accept();
    peer.expect("RequestSystemStatus");
    peer.expect("SystemRegister");
    CSTAMonitorFilter filter;
    filter.setHeldFilter(true);
    std::future<Outcome> started =
        std::async(std::launch::async, [&] { return startMonitor("localDeviceID", filter); });
    const int id = peer.expect("MonitorStart");
    EXPECT_EQ(
        peer.lastXml(),
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><MonitorStart "
        "xmlns=\"http://www.ecma-international.org/standards/ecma-323/csta/"
        "ed5\"><monitorObject><deviceObject>"
        "N&lt;2001&gt;</deviceObject></monitorObject><requestedMonitorFilter><callcontrol><held>true</held>"
        "</callcontrol></requestedMonitorFilter><monitorType>device</monitorType></MonitorStart>");
    peer.send(id, "<MonitorStartResponse><monitorCrossRefID>1</monitorCrossRefID></MonitorStartResponse>");
    EXPECT_TRUE(started.get().succeeded());
}

}  // namespace
