#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/host-switch/SwitchClientFixture.h"

namespace {

using switchtest::RawClient;
using switchtest::Switch;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

struct PlayedCase {
    const char* text;
    const char* heard;
};

TEST_F(Switch, TellsEachMonitoredPhoneItsOwnSideOfACall) {
    const std::vector<PlayedCase> cases = {
        {"call c from 4711 to 2001; ring c; answer c; hold c; retrieve c; hangup c by caller",
         "4711 Originated connected, 4711 Delivered connected, 2001 Delivered alerting, "
         "4711 Established connected, 2001 Established connected, 4711 Held connected, 2001 Held hold, "
         "4711 Retrieved connected, 2001 Retrieved connected, 4711 ConnectionCleared null, "
         "2001 ConnectionCleared connected, 2001 ConnectionCleared null"},
        {"call c from 1; ring c; divert c to 4712 reason noanswer; answer c; hangup c by caller",
         "2001 Delivered alerting, 2001 Diverted null, 4712 Delivered alerting, "
         "4712 Established connected, 4712 ConnectionCleared connected, 4712 ConnectionCleared null"},
        {"dial c to 1; divert c to 4712 reason busy; noanswer c",
         "2001 ServiceInitiated initiated, 2001 Originated connected, 2001 Diverted connected, "
         "2001 Delivered connected, 4712 Delivered alerting, 2001 ConnectionCleared null, "
         "4712 ConnectionCleared alerting, 4712 ConnectionCleared null"},
        {"call c from 1 to 4712; ring c; pickup c; hangup c",
         "4712 Delivered alerting, 4712 Diverted null, 2001 Established connected, "
         "2001 ConnectionCleared null"},
        {"call c from 1; ring c; elsewhere c", "2001 Delivered alerting, 2001 ConnectionCleared null"},
        {"call c from 1; ring c; missed c; name c \"Ann\"; giveup c; missed from 2",
         "2001 Delivered alerting, 2001 CallInformation, 2001 CallInformation, "
         "2001 ConnectionCleared alerting, 2001 ConnectionCleared null, 2001 CallInformation"},
        // The phone connects its caller with the party that it has asked.
        {"call c from 1; ring c; answer c; consult d from c to 4712; connect d; transfer c to d; hangup c",
         "2001 Delivered alerting, 2001 Established connected, 2001 Held hold, "
         "2001 ServiceInitiated initiated, 2001 Originated connected, 2001 Delivered connected, "
         "4712 Delivered alerting, 2001 Established connected, 4712 Established connected, "
         "2001 Transfered null, 4712 Transfered connected, 4712 ConnectionCleared connected, "
         "4712 ConnectionCleared null"},
        // The caller connects the phone with a party whose phone still rings.
        {"call c from 1; ring c; answer c; consult d from c to 4712 by caller; ring d; transfer c to d; "
         "answer c; hangup c",
         "2001 Delivered alerting, 2001 Established connected, 2001 Held connected, "
         "4712 Delivered alerting, 2001 Transfered connected, 4712 Transfered alerting, "
         "4712 Established connected, 2001 ConnectionCleared null, 4712 ConnectionCleared connected, "
         "4712 ConnectionCleared null"},
        {"call c from 4711; ring c; answer c; transfer c to 4712; answer c; hangup c",
         "4711 Originated connected, 4711 Delivered connected, 2001 Delivered alerting, "
         "4711 Established connected, 2001 Established connected, 4711 Held connected, 2001 Held hold, "
         "4711 ConnectionCleared connected, 2001 ConnectionCleared null, 2001 Transfered null, "
         "4711 Transfered connected, 4712 Delivered alerting, 4712 Established connected, "
         "4711 ConnectionCleared null, 4712 ConnectionCleared connected, 4712 ConnectionCleared null"},
        {"dial c to 1; connect c; consult d from c to 4712; connect d; join c d; leave c by 1; leave c by "
         "4712",
         "2001 ServiceInitiated initiated, 2001 Originated connected, 2001 Delivered connected, "
         "2001 Established connected, 2001 Held hold, 2001 ServiceInitiated initiated, "
         "2001 Originated connected, 2001 Delivered connected, 4712 Delivered alerting, "
         "2001 Established connected, 4712 Established connected, 2001 Conferenced connected, "
         "4712 Conferenced connected, 2001 Private, 2001 Private, 4712 Private, "
         "2001 ConnectionCleared connected, 4712 ConnectionCleared connected, "
         "2001 ConnectionCleared connected, 4712 ConnectionCleared null, 2001 ConnectionCleared null"},
    };
    RawClient client(simulator.port());
    for (const char* device : {"4711", "2001", "4712"}) {
        static_cast<void>(client.monitor(device));
    }
    for (const PlayedCase& one : cases) {
        playToEnd(one.text);
        EXPECT_EQ(client.heardUpTo(7), one.heard) << one.text;
    }
}

TEST_F(Switch, EndsAConferenceForThePhoneThatLeavesItFirst) {
    RawClient client(simulator.port());
    static_cast<void>(client.monitor("2001"));
    playToEnd("dial c to 1; connect c; consult d from c to 2; connect d; join c d; leave c; leave c by 2");
    static_cast<void>(client.nextNames(12));
    EXPECT_EQ(client.heardUpTo(7), "ConnectionCleared null");
}

TEST_F(Switch, WritesNamesNumbersAndRedirections) {
    RawClient client(simulator.port());
    const std::string id = client.monitor("2001");
    play("call c from 4711 \"Ann <M\xC3\xBCller>\" via 4700 because busy; ring c");
    EXPECT_EQ(client.next().xml,
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><DeliveredEvent "
              "xmlns=\"http://www.ecma-international.org/standards/ecma-323/csta/ed4\"><monitorCrossRefID>" +
                  id +
                  "</monitorCrossRefID><connection><callID>1</callID><deviceID>2001</deviceID></connection>"
                  "<alertingDevice><deviceIdentifier>2001</deviceIdentifier></alertingDevice>"
                  "<callingDevice><deviceIdentifier>N&lt;4711&gt;Ann &lt;M\xC3\xBCller&gt;</deviceIdentifier>"
                  "</callingDevice><calledDevice><deviceIdentifier>4700</deviceIdentifier></calledDevice>"
                  "<lastRedirectionDevice><numberDialed>4700</numberDialed></lastRedirectionDevice>"
                  "<localConnectionInfo>alerting</localConnectionInfo><cause>callForwardBusy</cause></"
                  "DeliveredEvent>");
}

TEST_F(Switch, HidesWhoCallsAnonymously) {
    RawClient client(simulator.port());
    static_cast<void>(client.monitor("2001"));
    play("call c from anonymous \"Ann\"; ring c; giveup c");
    EXPECT_THAT(client.next().xml, HasSubstr("<callingDevice><restricted/></callingDevice>"));
    EXPECT_THAT(client.next().xml, Not(HasSubstr("Ann")));
}

struct WrittenCase {
    const char* text;
    /// How many events of the phone come before it.
    std::size_t before;
    const char* written;
};

TEST_F(Switch, WritesTheMembersOfEventsBesideTheUsualOnes) {
    const std::vector<WrittenCase> cases = {
        {"call c from 1 \"Ann\"; ring c; answer c; consult d from c to 2 \"Bob\"; connect d; transfer c to d",
         7,
         "<primaryOldCall><callID>1</callID><deviceID>2001</deviceID></primaryOldCall>"
         "<secondaryOldCall><callID>2</callID><deviceID>2001</deviceID></secondaryOldCall>"
         "<transferringDevice><deviceIdentifier>2001</deviceIdentifier></transferringDevice>"
         "<transferredToDevice><deviceIdentifier>N&lt;2&gt;Bob</deviceIdentifier></transferredToDevice>"
         "<transferredConnections><connectionListItem>"
         "<newConnection><callID>3</callID><deviceID>1</deviceID></newConnection>"
         "<oldConnection><callID>1</callID><deviceID>1</deviceID></oldConnection>"
         "<endpoint><deviceID>N&lt;1&gt;Ann</deviceID></endpoint></connectionListItem><connectionListItem>"
         "<newConnection><callID>3</callID><deviceID>2</deviceID></newConnection>"
         "<oldConnection><callID>2</callID><deviceID>2</deviceID></oldConnection>"
         "<endpoint><deviceID>N&lt;2&gt;Bob</deviceID></endpoint></connectionListItem></"
         "transferredConnections>"
         "<localConnectionInfo>null</localConnectionInfo><cause>transfer</cause><extensions>"},
        {"dial c to 1 \"Ann;=%\"; ring c; divert c to 2; connect c; transfer c to anonymous by called", 8,
         "<newConnection><callID>5</callID><deviceID>trunk-5</deviceID></newConnection><endpoint><restricted/"
         ">"
         "</endpoint></connectionListItem></transferredConnections>"
         "<localConnectionInfo>connected</localConnectionInfo><cause>singleStepTransfer</cause><extensions>"
         "<privateData><private>dialledName=Ann%3B%3D%25;firstForwardedNumber=2;redirectingNumber=2</"
         "private>"},
        {"call c from 1; ring c; answer c; consult d from c to 2", 2,
         "<localConnectionInfo>hold</localConnectionInfo><cause>consultation</cause>"},
        {"dial c to 1; connect c; consult d from c to 2 \"Bob\"; connect d; join c d", 9,
         "<conferencingDevice><deviceIdentifier>2001</deviceIdentifier></conferencingDevice>"
         "<addedParty><deviceIdentifier>N&lt;2&gt;Bob</deviceIdentifier></addedParty><conferenceConnections>"
         "<connectionListItem><newConnection><callID>10</callID><deviceID>2001</deviceID></newConnection>"
         "<oldConnection><callID>8</callID><deviceID>2001</deviceID></oldConnection>"},
        {"dial c to 1; connect c; consult d from c to 2 \"Bob\"; connect d; join c d", 11,
         "<privateData><private><conferenceMembership><callID>12</callID><deviceID>2</deviceID>"
         "<member><deviceIdentifier>N&lt;2&gt;Bob</deviceIdentifier></member>"
         "<member><deviceIdentifier>1</deviceIdentifier></member></conferenceMembership>"},
        {"callback 4712 \"Bob\" because busy; callback 4712 cancel", 1,
         "<originatingDevice><deviceIdentifier>2001</deviceIdentifier></originatingDevice>"
         "<targetDevice><deviceIdentifier>N&lt;4712&gt;Bob</deviceIdentifier></targetDevice>"
         "<callBackSetCanceled>false</callBackSetCanceled><extensions><privateData>"
         "<private>onBusy requested</private>"},
        {"callback 4712; callback 4712 done", 1,
         "<callBackSetCanceled>true</callBackSetCanceled><extensions><privateData><private>onRequest done<"},
        {"missed from 4712 \"Bob\"", 0,
         "<connection><callID>-1</callID><deviceID>2001</deviceID></connection>"
         "<device><deviceIdentifier>2001</deviceIdentifier></device>"
         "<callingDevice><deviceIdentifier>N&lt;4712&gt;Bob</deviceIdentifier></callingDevice>"
         "<extensions><privateData><private><callStatus>MissedCall</callStatus></private>"},
        {"dial c to 1; ring c; name c \"Ann\"", 3,
         "<device><deviceIdentifier>2001</deviceIdentifier></device>"
         "<callingDevice><deviceIdentifier>N&lt;1&gt;Ann</deviceIdentifier></callingDevice></"
         "CallInformation"},
    };
    RawClient client(simulator.port());
    static_cast<void>(client.monitor("2001"));
    for (const WrittenCase& one : cases) {
        playToEnd(one.text);
        static_cast<void>(client.nextNames(one.before));
        EXPECT_THAT(client.next().xml, HasSubstr(one.written)) << one.text;
        // Up to an answer: what else the phone heard.
        client.send(7, "<RequestSystemStatus/>");
        while (client.next().invokeId != 7) {}
    }
}

TEST_F(Switch, TellsWhichLinesThePhoneServesAndWaitsForTheirMonitors) {
    RawClient client(simulator.port());
    const std::string question =
        "<GetSwitchingFunctionDevices><requestedDeviceID>2001</requestedDeviceID></"
        "GetSwitchingFunctionDevices>";
    EXPECT_THAT(client.ask(1, question), HasSubstr("<operation>serviceNotSupported<"));
    play("device 2001; line 2050; line 2051; call c from 1 to 2051; ring c");
    EXPECT_THAT(
        client.ask(2, question),
        HasSubstr("<GetSwitchingFunctionDevicesResponse xmlns=\"http://www.ecma-international.org/standards/"
                  "ecma-323/csta/ed4\"><serviceCrossRefID>1</serviceCrossRefID>"));
    EXPECT_THAT(
        client.next().xml,
        HasSubstr("<serviceCrossRefID>1</serviceCrossRefID><lastSegment>true</lastSegment><deviceList>"
                  "<deviceListItem><deviceID>2001</deviceID><deviceCategory>station</deviceCategory>"
                  "</deviceListItem><deviceListItem><deviceID>2050</deviceID>"));
    for (const char* device : {"2001", "2050", "2051"}) {
        static_cast<void>(client.monitor(device));
    }
    EXPECT_THAT(client.nextNames(1), ElementsAre("2051 Delivered alerting"));
}

}  // namespace
