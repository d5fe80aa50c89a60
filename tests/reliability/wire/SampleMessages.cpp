#include "tests/reliability/wire/SampleMessages.h"

#include <cstddef>

#include "tests/reliability/random-calls/CallEvent.h"
#include "tests/reliability/random-calls/SwitchModel.h"

namespace reliability {

namespace {

constexpr int kEvent = 9999;

std::string repeated(const std::string& text, std::size_t times) {
    std::string all;
    for (std::size_t each = 0; each < times; ++each) {
        all += text;
    }
    return all;
}

std::string eventText(EventKind kind, const std::string& crossRefId) {
    CallEvent event;
    event.kind = kind;
    event.callId = "77";
    event.subject = event.device = event.called = SwitchModel::own();
    event.calling = {"4711", "Ann M\xC3\xBCller"};
    event.redirectedBy = {"2005", "Desk"};
    event.to = {"4712", "Bob"};
    event.cause = "normal";
    event.local = kind == EventKind::eConnectionCleared ? "null" : "alerting";
    if (kind == EventKind::eTransferred || kind == EventKind::eConferenced) {
        event.secondaryCallId = "78";
        event.newCallId = "79";
        event.connections = {{{"4712", "Bob"}, "78"}, {SwitchModel::own(), "77"}};
    }
    return writeEvent(event, {}, crossRefId);
}

std::string element(const std::string& name, const std::string& content) {
    return "<" + name + ">" + content + "</" + name + ">";
}

}  // namespace

std::vector<SampleMessage> sampleMessages(const std::string& crossRefId) {
    std::vector<SampleMessage> samples;
    for (int kind = 0; kind <= static_cast<int>(EventKind::eConferenced); ++kind) {
        samples.push_back({kEvent, eventText(static_cast<EventKind>(kind), crossRefId)});
    }
    const std::string monitor = element("monitorCrossRefID", crossRefId);
    const std::string connection =
        element("connection", element("callID", "77") + element("deviceID", "2001"));
    for (const std::string& text :
         {element("CallInformationEvent", monitor + connection + element("device", "2001")),
          element("PrivateEvent", monitor + element("privateData", element("private", "MissedCall"))),
          element("CallBackEvent", monitor + element("originatingDevice", "2001") +
                                       element("targetDevice", "4711") +
                                       element("callBackSetCanceled", "true"))}) {
        samples.push_back({kEvent, text});
    }
    const std::string segment = element("serviceCrossRefID", "5") + element("lastSegment", "true");
    samples.push_back({3, element("SystemStatus", element("systemStatus", "normal"))});
    samples.push_back({4, element("SnapshotDeviceData", segment)});
    samples.push_back({5, element("SnapshotDeviceResponse", element("serviceCrossRefID", "5"))});
    samples.push_back({6, element("MonitorStartResponse", element("monitorCrossRefID", "zz"))});
    samples.push_back({7, element("CSTAErrorCode", element("operation", "invalidCallID"))});
    samples.push_back({8, element("MakeCall", element("callingDevice", "2001"))});
    samples.push_back({9, "<keepalive/>"});
    return samples;
}

std::vector<SampleMessage> disturbingMessages(const std::string& crossRefId) {
    return {{3, element("MonitorStop", element("monitorCrossRefID", crossRefId))},
            {3, element("SystemStatus", element("systemStatus", "initializing"))},
            {3, element("SystemStatus", element("systemStatus", "disabled"))},
            {3, "<ApplicationSessionTerminated/>"},
            {3, "<SwitchingFunctionDevicesChanged/>"},
            {3, "<SystemRegisterAbort/>"}};
}

const std::vector<std::string>& hostileTexts() {
    const std::string event = "DeliveredEvent";
    static const std::vector<std::string> kTexts = {
        R"(<!DOCTYPE a [<!ENTITY a "aaaaaaaaaa"><!ENTITY b "&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;">]><a>&b;&b;</a>)",
        R"(<!DOCTYPE a [<!ENTITY x SYSTEM "file:///etc/passwd">]><DeliveredEvent>&x;</DeliveredEvent>)",
        "<!DOCTYPE a [" + repeated("<!ENTITY a 'b'>", 2000) + "]>" + element(event, ""),
        element(event, element("callingDevice", std::string(60000, '7'))),
        element(event, element("callingDevice", "N&lt;1>" + repeated("\xC3\xBC", 30000))),
        "<DeliveredEvent " + repeated("a='1' ", 9000) + "/>",
        "<DeliveredEvent a='" + std::string(60000, 'x') + "'/>",
        "<?xml version='1.0' encoding='ISO-8859-1'?><DeliveredEvent>\xFC\x80\x9F</DeliveredEvent>",
        "<DeliveredEvent>\xC0\xAF\xED\xA0\x80\xF5</DeliveredEvent>",
        "<DeliveredEvent><![CDATA[" + std::string(60000, ']') + "]]></DeliveredEvent>",
        "<!--" + std::string(60000, '-') + "><DeliveredEvent/>",
        "<?" + std::string(60000, '?'),
        "<Event/>",
        "<Response/>",
        "<:Event xmlns:='x'/>",
        "<",
        "<>",
        "</DeliveredEvent>",
        "plain text",
        " \r\n\t ",
        "\xEF\xBB\xBF",
        std::string("<DeliveredEvent>a\0b\x1B</DeliveredEvent>", 37),
        "<DeliveredEvent>&#0;&#x0;&#99999999999;&unknown;&#x1b;</DeliveredEvent>",
        std::string("<Delivered\0Event>", 17),
    };
    return kTexts;
}

const std::vector<std::string>& refusedTexts() {
    const std::string event = "DeliveredEvent";
    static const std::vector<std::string> kTexts = {
        element(event, repeated("<a>", 65) + repeated("</a>", 65)),
        element(event, repeated("<a>", 9000) + repeated("</a>", 9000)),
        repeated("<a>", 20000),
        "<?xml version='1.0' encoding='UTF-16'?><DeliveredEvent/>",
        std::string("\xFF\xFE<\0a\0/\0>\0", 10),
    };
    return kTexts;
}

}  // namespace reliability
