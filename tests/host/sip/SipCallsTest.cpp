#include "host/sip/SipCalls.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace host {
namespace {

using Texts = std::vector<std::string>;

/// "incoming c1 CALL_CLOSED 486 Busy Here": the call's id is the second word.
SipPhoneEvent eventOf(const std::string& text) {
    const bool outgoing = text.substr(0, 3) == "out";
    return {.type = text.substr(7, text.find(' ', 7) - 7),
            .account = "sip:alice@h",
            .outgoing = outgoing,
            .peerUri = "sip:bob@h",
            .peerName = "Bob",
            .id = text.substr(4, 2),
            .param = text.find(' ', 7) == std::string::npos ? "" : text.substr(text.find(' ', 7) + 1)};
}

/// "c1_i Delivered alerting newCall"
Texts textsOf(const SwitchEvents& events) {
    Texts texts;
    for (const SwitchEvent& event : events) {
        const std::string name(eventSchema(event.type).rootName);
        EXPECT_EQ(event.listeners.size(), 1U);
        texts.push_back(event.callId + ' ' + name.substr(0, name.find("Event")) + ' ' +
                        event.listeners.front().localConnection + ' ' + event.cause);
    }
    return texts;
}

struct Row {
    std::string name;
    Texts phone;
    Texts device;
};

const std::vector<Row> kRows = {
    {"missed",
     {"in  c1 CALL_INCOMING", "in  c1 CALL_CLOSED Connection reset by peer"},
     {"c1_i Delivered alerting newCall", "c1_i ConnectionCleared alerting normalClearing",
      "c1_i ConnectionCleared null normalClearing"}},
    {"rejected here",
     {"in  c1 CALL_INCOMING", "in  c1 CALL_CLOSED Connection reset by user"},
     {"c1_i Delivered alerting newCall", "c1_i ConnectionCleared null normalClearing"}},
    {"received call, ended by the peer; repeated messages",
     {"in  c1 CALL_INCOMING", "in  c1 CALL_INCOMING", "in  c1 CALL_REMOTE_SDP offer",
      "in  c1 CALL_ESTABLISHED", "in  c1 CALL_ESTABLISHED", "in  c1 CALL_CLOSED Connection reset by peer",
      "in  c1 CALL_CLOSED Connection reset by peer"},
     {"c1_i Delivered alerting newCall", "c1_i Established connected newCall",
      "c1_i ConnectionCleared connected normalClearing", "c1_i ConnectionCleared null normalClearing"}},
    {"outgoing call, answered, ended here",
     {"out c1 CALL_RINGING", "out c1 CALL_ESTABLISHED", "out c1 CALL_CLOSED Connection reset by user"},
     {"c1_o Originated connected newCall", "c1_o Delivered connected newCall",
      "c1_o Established connected newCall", "c1_o ConnectionCleared null normalClearing"}},
    {"outgoing, busy at once",
     {"out c1 CALL_CLOSED 486 Busy Here"},
     {"c1_o Originated connected newCall", "c1_o Failed connected busy",
      "c1_o ConnectionCleared null normalClearing"}},
    {"outgoing, rejected after ringing",
     {"out c1 CALL_PROGRESS", "out c1 CALL_RINGING", "out c1 CALL_CLOSED 603 Decline"},
     {"c1_o Originated connected newCall", "c1_o Delivered connected newCall",
      "c1_o Failed connected callCancelled", "c1_o ConnectionCleared null normalClearing"}},
    {"outgoing, cancelled before it rings",
     {"out c1 CALL_CLOSED Connection reset by user"},
     {"c1_o Originated connected newCall", "c1_o ConnectionCleared null normalClearing"}},
    {"two at once",
     {"in  c1 CALL_INCOMING", "in  c1 CALL_ESTABLISHED", "in  c2 CALL_INCOMING", "in  c2 CALL_ESTABLISHED",
      "in  c2 CALL_CLOSED Connection reset by user"},
     {"c1_i Delivered alerting newCall", "c1_i Established connected newCall",
      "c2_i Delivered alerting newCall", "c1_i Held hold normal", "c2_i Established connected newCall",
      "c2_i ConnectionCleared null normalClearing", "c1_i Retrieved connected normal"}},
    {"both ends of a call to oneself",
     {"out c1 CALL_RINGING", "in  c1 CALL_INCOMING", "in  c1 CALL_CLOSED Connection reset by user",
      "out c1 CALL_CLOSED 486 Rejected"},
     {"c1_o Originated connected newCall", "c1_o Delivered connected newCall",
      "c1_i Delivered alerting newCall", "c1_i ConnectionCleared null normalClearing",
      "c1_o Failed connected callCancelled", "c1_o ConnectionCleared null normalClearing"}},
    {"nothing of a call",
     {"in  c1 CALL_CLOSED x", "in  c1 REGISTER_OK", "out    CALL_LOCAL_SDP offer", "in  c1 CALL_RTCP audio"},
     {}},
};

TEST(SipCallsTest, TheMessagesOfTheTelephoneAreTheEventsOfTheDevice) {
    for (const Row& row : kRows) {
        SipCalls calls({.number = "alice", .name = {}});
        Texts device;
        for (const std::string& text : row.phone) {
            SipPhoneEvent event = eventOf(text);
            event.id.erase(0, event.id.find_first_not_of(' '));
            const Texts texts = textsOf(calls.process(event));
            device.insert(device.end(), texts.begin(), texts.end());
        }
        EXPECT_EQ(device, row.device) << row.name;
        EXPECT_EQ(calls.live().size(), row.name == "two at once" ? 1U : 0U) << row.name;
    }
}

TEST(SipCallsTest, ADialledCallBeginsOnceInAnyOrder) {
    SipCalls calls({.number = "alice", .name = {}});
    EXPECT_EQ(textsOf(calls.dialled("c1", "sip:bob@h")),
              (Texts{"c1_o ServiceInitiated initiated makeCall", "c1_o Originated connected newCall"}));
    EXPECT_EQ(textsOf(calls.process(eventOf("out c1 CALL_RINGING"))),
              (Texts{"c1_o Delivered connected newCall"}));
    EXPECT_EQ(textsOf(calls.dialled("c1", "sip:bob@h")), Texts{});
    EXPECT_TRUE(calls.find("c1_o"));
    EXPECT_FALSE(calls.find("c1_i"));
}

TEST(SipCallsTest, AnAcceptedCallHoldsAConversationRatherThanACallThatRings) {
    SipCalls calls({.number = "alice", .name = {}});
    const auto held = [&calls] {
        const auto found = calls.heldFor({.sipId = "c1", .outgoing = false, .isRinging = true});
        return found ? found->sipId : std::string();
    };
    static_cast<void>(calls.process(eventOf("in  c1 CALL_INCOMING")));
    EXPECT_EQ(held(), "");
    static_cast<void>(calls.process(eventOf("in  c2 CALL_INCOMING")));
    EXPECT_EQ(held(), "c2");
    static_cast<void>(calls.process(eventOf("in  c3 CALL_ESTABLISHED")));
    EXPECT_EQ(held(), "c3");
    static_cast<void>(calls.process(eventOf("in  c4 CALL_ESTABLISHED")));
    EXPECT_EQ(held(), "c4");
}

TEST(SipCallsTest, CallsOfALostTelephoneEndUnlessItStillHasThem) {
    SipCalls calls({.number = "alice", .name = {}});
    static_cast<void>(calls.process(eventOf("in  c1 CALL_INCOMING")));
    static_cast<void>(calls.process(eventOf("in  c2 CALL_INCOMING")));
    calls.doubtAll();
    EXPECT_EQ(textsOf(calls.introduce({.id = "c1",
                                       .outgoing = false,
                                       .peerUri = "sip:bob@h",
                                       .peerName = {},
                                       .state = SipCallState::State::eTalking})),
              (Texts{"c1_i Established connected newCall"}));
    EXPECT_TRUE(calls.dropDoubtful());
    EXPECT_FALSE(calls.dropDoubtful());
    EXPECT_FALSE(calls.find("c2_i"));
    EXPECT_EQ(textsOf(calls.endAll()).size(), 2U);
    EXPECT_TRUE(calls.live().empty());
}

}  // namespace
}  // namespace host
