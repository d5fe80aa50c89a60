#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "host/sip/CallEnd.h"
#include "host/sip/Netstring.h"
#include "host/sip/PhoneMessage.h"
#include "host/sip/PhoneTexts.h"
#include "host/sip/SipAddress.h"

namespace host {
namespace {

TEST(NetstringTest, IsCutOffTheStreamHoweverTheBytesCome) {
    struct Row {
        std::vector<std::string> pieces;
        std::vector<std::string> texts;
        bool invalid = false;
    };
    const std::vector<Row> rows = {
        {{"5:hello,"}, {"hello"}},
        {{"5", ":he", "llo", ","}, {"hello"}},
        {{"1:a,2:b,,0:,"}, {"a", "b,", ""}},
        {{"1:a,2:b"}, {"a"}},
        {{"1:ab"}, {}, true},
        {{"x:a,"}, {}, true},
        {{":a,"}, {}, true},
        {{"-1:a,"}, {}, true},
        {{"1234567"}, {}, true},
        {{"262145:"}, {}, true},
        {{"1:a,{}"}, {"a"}, true},
    };
    for (const Row& row : rows) {
        NetstringReader reader;
        std::vector<std::string> texts;
        for (const std::string& piece : row.pieces) {
            reader.feed(piece);
            while (const auto text = reader.next()) {
                texts.push_back(*text);
            }
        }
        EXPECT_EQ(texts, row.texts) << row.pieces.front();
        EXPECT_EQ(reader.isInvalid(), row.invalid) << row.pieces.front();
    }
}

TEST(PhoneMessageTest, NamesInAnyEncodingDoNotLoseTheEvent) {
    const std::vector<std::pair<std::string, std::string>> names = {{"J\xC3\xB6rg", "J\xC3\xB6rg"},
                                                                    {"J\xF6rg", "J\xC3\xB6rg"},
                                                                    {"a\tb\x01", "a b "},
                                                                    {R"(\"x\")", R"("x")"}};
    for (const auto& [sent, read] : names) {
        const auto message = readPhoneMessage(
            R"({"event":true,"type":"CALL_INCOMING","direction":"incoming","id":"c1","peerdisplayname":")" +
            sent + "\"}");
        ASSERT_TRUE(message) << sent;
        EXPECT_EQ(std::get<SipPhoneEvent>(*message).peerName, read);
    }
    EXPECT_FALSE(readPhoneMessage("[1]"));
    EXPECT_FALSE(readPhoneMessage(R"({"event":1})"));
    EXPECT_FALSE(readPhoneMessage(std::string(100000, '[')));
}

TEST(PhoneTextsTest, TheStateOfACallIsReadFromItsOwnLines) {
    const std::string head = "\n===== Call debug (ESTABLISHED) =====\n local_uri: User b <sip:b@h>\n";
    const auto call = readCallState(head +
                                    " peer_uri:  <sip:x@y> af= id=no <sip:a@127.0.0.1:5070>\n"
                                    " af=AF_INET id=c1@h\n direction: Incoming\nSDP session\n af= id=no\n");
    ASSERT_TRUE(call);
    EXPECT_EQ(call->id, "c1@h");
    EXPECT_EQ(call->peerUri, "sip:a@127.0.0.1:5070");
    EXPECT_EQ(call->peerName, "<sip:x@y> af= id=no");
    EXPECT_FALSE(call->outgoing);
    EXPECT_EQ(call->state, SipCallState::State::eTalking);
    EXPECT_FALSE(readCallState("\n(no active calls)\n"));
    EXPECT_EQ(
        readLineNumbers("\n--- Active calls (2) ---\n  [line 1]  0:00:00 RINGING sip:a@h\n> [line 12] x\n"),
        (std::vector<int>{1, 12}));
}

TEST(PhoneTextsTest, TheRegistrationIsThatOfTheAccount) {
    const std::vector<std::pair<std::string, std::optional<bool>>> rows = {
        {"> sip:bob@h  \x1b[31mERR\x1b[;m \n  sip:ann@h  \x1b[32mOK \x1b[;m Expires 9s\n", true},
        {"  sip:ann@OK.example OK\n> sip:ann@h  \x1b[31mERR\x1b[;m Expires 0s\n", false},
        {"> sip:ann@h  \x1b[33mzzz\x1b[;m Expires 0s\n", std::nullopt},
        {"> sip:ann@h\n", std::nullopt},
        {"> sip:joann@h OK\n", std::nullopt},
    };
    for (const auto& [text, state] : rows) {
        EXPECT_EQ(readRegistration(text, "sip:ann@h;transport=tls"), state) << text;
    }
    EXPECT_EQ(readRegistration("> sip:a%40x@h  \x1b[32mOK \x1b[;m Expires 9s\n", "sip:a%40x@h"), true);
}

TEST(PhoneTextsTest, ARefusedRegistrationHasAReasonInTheOutput) {
    const auto fault = [](const char* line) {
        return readRegistrationFault(line, "sip:ann@h;transport=tls").value_or("-");
    };
    EXPECT_EQ(fault("reg: sip:ann@h: 403 Forbidden (Server 1)"), "403 Forbidden");
    EXPECT_EQ(fault("reg: sip:joann@h: 403 Forbidden ()"), "-");
    EXPECT_EQ(fault("baresip is ready."), "-");
}

TEST(CallEndTest, ReadsTheTextOfTheTelephone) {
    using By = CallEnd::By;
    const std::vector<std::pair<std::string, CallEnd>> rows = {
        {"Connection reset by user", {By::eUser, "normalClearing"}},
        {"Connection reset by peer", {By::ePeer, "normalClearing"}},
        {"", {By::ePeer, "normalClearing"}},
        {"Connection timed out", {By::eFailure, "callNotAnswered"}},
        {"486 Busy Here", {By::eFailure, "busy"}},
        {"600 Busy Everywhere", {By::eFailure, "busy"}},
        {"486 Rejected", {By::eFailure, "callCancelled"}},
        {"603 Decline", {By::eFailure, "callCancelled"}},
        {"480 Temporarily Unavailable", {By::eFailure, "callNotAnswered"}},
        {"404 Not Found", {By::eFailure, "destNotObtainable"}},
        {"503 Service Unavailable", {By::eFailure, "networkCongestion"}},
        {"488 Not Acceptable Here", {By::eFailure, "callCancelled"}},
        {"403 Forbidden", {By::eFailure, "callCancelled"}},
        {"Connection refused", {By::eFailure, "networkCongestion"}},
    };
    for (const auto& [text, end] : rows) {
        EXPECT_EQ(readCallEnd(text), end) << text;
    }
}

TEST(SipAddressTest, APartyIsNamedByWhatCanBeDialled) {
    struct Row {
        std::string uri;
        std::string number;
        bool anonymous = false;
    };
    const std::vector<Row> rows = {
        {"sip:+4930123@gateway.example.net;user=phone", "+4930123"},
        {"sips:%2B4930123@example.org", "+4930123"},
        {"sip:bob@Example.Org", "bob@example.org"},
        {"sip:bob@example.net:5070", "bob@example.net:5070"},
        {"sip:b%3Eo!b@example.org", "b_o_b@example.org"},
        {"sip:Anonymous@anonymous.invalid", "", true},
        {"sip:Example.org;lr", "sip:example.org"},
        {"sip:192.0.2.5:5070", "sip:192.0.2.5:5070"},
        {"sip:anonymous.invalid", "", true},
        {"sip:@example.org", "", true},
        {"", "", true},
    };
    for (const Row& row : rows) {
        const SwitchParty party = partyOf(row.uri, " Bob ");
        EXPECT_EQ(party.number, row.number) << row.uri;
        EXPECT_EQ(party.anonymous, row.anonymous) << row.uri;
        EXPECT_EQ(party.name, row.anonymous ? "" : "Bob") << row.uri;
    }
}

TEST(SipAddressTest, OnlyWhatTheTelephoneUnderstandsIsDialled) {
    const std::vector<std::pair<std::string, std::optional<std::string>>> rows = {
        {"+49 (30) 12-3/4.5", "+493012345"},
        {"*61#", "*61%23"},
        {"tel:+4930;phone-context=x", "+4930"},
        {"sip:bob@example.net:5070;transport=tcp", "sip:bob@example.net:5070;transport=tcp"},
        {"bob", "bob"},
        {"", std::nullopt},
        {"sip:example.org:5070", std::nullopt},
        {"bob example", std::nullopt},
        {"bob\nhangup", std::nullopt},
        {std::string(201, 'a'), std::nullopt},
    };
    for (const auto& [number, text] : rows) {
        EXPECT_EQ(dialText(number), text) << number;
    }
}

TEST(SipAddressTest, DifferentCallsHaveDifferentIds) {
    EXPECT_EQ(cstaCallId("a1-b.c@h", false), "a1-b.c_40h_i");
    EXPECT_NE(cstaCallId("a", true), cstaCallId("a", false));
    EXPECT_NE(cstaCallId("a_40", true), cstaCallId("a@", true));
}

}  // namespace
}  // namespace host
