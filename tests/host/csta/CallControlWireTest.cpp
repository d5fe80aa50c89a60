#include <gtest/gtest.h>

#include "host/csta-wire/CallControlWire.h"
#include "host/csta-wire/NameSpaces.h"

using namespace host;

namespace {

using Service = CallControlService;

WireDocument parsed(const std::string& xml) {
    std::string fault;
    auto document = WireDocument::parse(xml, fault);
    EXPECT_TRUE(document) << fault << ": " << xml;
    return std::move(document).value();
}

TEST(CallControlWire, readsTheRequestsThatItWrites) {
    const CallControlRequest rows[] = {
        {.service = Service::eMakeCall, .callingDevice = "2001", .calledNumber = "+493012345<&>"},
        {.service = Service::eMakeCall,
         .callingDevice = "2001",
         .calledNumber = "sip:ann@example.org",
         .prompt = true},
        {.service = Service::eAnswerCall, .connection = {"c7", "N<2001>Ann"}},
        {.service = Service::eClearConnection, .connection = {"c7", "2001"}},
    };
    for (const CallControlRequest& row : rows) {
        const std::string xml = writeCallControlRequest(row, cstaNameSpace("ed4"));
        const auto read = readCallControlRequest(parsed(xml));
        ASSERT_TRUE(read) << xml;
        EXPECT_EQ(writeCallControlRequest(*read, cstaNameSpace("ed4")), xml);
        EXPECT_EQ(read->calledNumber, row.calledNumber);
        EXPECT_EQ(read->connection, row.connection);
    }
    EXPECT_FALSE(readCallControlRequest(parsed("<HoldCall/>")));
}

TEST(CallControlWire, readsTheShapesOfOtherPeers) {
    struct Row {
        const char* request;
        WireConnection connection;
    };
    const Row rows[] = {
        {"<ClearConnection><connectionToBeCleared><deviceID>200</deviceID><callID> 7 </callID>"
         "</connectionToBeCleared><reason>free text</reason></ClearConnection>",
         {"7", "200"}},
        {"<x:AnswerCall xmlns:x='u'><x:callToBeAnswered><x:callID/><x:deviceID><x:deviceIdentifier>200"
         "</x:deviceIdentifier></x:deviceID></x:callToBeAnswered></x:AnswerCall>",
         {"", "200"}},
        {"<AnswerCall/>", {}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(readCallControlRequest(parsed(row.request))->connection, row.connection) << row.request;
    }
    const auto make = readCallControlRequest(
        parsed("<MakeCall><calledDirectoryNumber>1</calledDirectoryNumber></MakeCall>"));
    EXPECT_TRUE(make->prompt);
    EXPECT_EQ(make->callingDevice, "");
}

TEST(CallControlWire, readsResponses) {
    struct Row {
        Service service;
        const char* response;
        std::optional<WireConnection> connection;
    };
    const Row rows[] = {
        {Service::eMakeCall,
         "<MakeCallResponse><callingDevice><callID>9</callID><deviceID>2001</deviceID></callingDevice>"
         "<calledDevice><deviceIdentifier>4711</deviceIdentifier></calledDevice></MakeCallResponse>",
         WireConnection{"9", "2001"}},
        {Service::eMakeCall,
         "<MakeCallResponse><callingDevice><deviceID>2001</deviceID></callingDevice></MakeCallResponse>",
         WireConnection{"", "2001"}},
        {Service::eMakeCall, "<MakeCallResponse/>", WireConnection{}},
        {Service::eMakeCall, "<AnswerCallResponse/>", std::nullopt},
        {Service::eClearConnection, "<ClearConnectionResponse><extensions/></ClearConnectionResponse>",
         WireConnection{}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(readCallControlResponse(row.service, parsed(row.response)), row.connection) << row.response;
    }
    const WireConnection made{"c1", "2001"};
    EXPECT_EQ(readCallControlResponse(
                  Service::eMakeCall,
                  parsed(writeCallControlResponse(Service::eMakeCall, made, cstaNameSpace("ed3")))),
              made);
}

TEST(CallControlWire, readsRefusals) {
    struct Row {
        std::string message;
        std::optional<CstaRefusal> refusal;
        bool notSupported;
    };
    const Row rows[] = {
        {writeCstaRefusal("operation", "serviceNotSupported", cstaNameSpace("ed4")),
         CstaRefusal{"operation", "serviceNotSupported"}, true},
        {"<errorResponse Error='invalidFeature'/>", CstaRefusal{"operation", "invalidFeature"}, true},
        {writeCstaRefusal("operation", "requestIncompatibleWithCalledDevice", cstaNameSpace("ed4")),
         CstaRefusal{"operation", "requestIncompatibleWithCalledDevice"}, false},
        {"<CSTAErrorCode><unspecified/></CSTAErrorCode>", CstaRefusal{"unspecified", ""}, false},
        {"<errorResponse Error='invalidCallID'/>", CstaRefusal{"operation", "invalidCallID"}, false},
        {"<MakeCallResponse/>", std::nullopt, false},
    };
    for (const Row& row : rows) {
        const auto refusal = readCstaRefusal(parsed(row.message));
        EXPECT_EQ(refusal, row.refusal) << row.message;
        EXPECT_EQ(refusal && refusal->isNotSupported(), row.notSupported) << row.message;
    }
}

}  // namespace
