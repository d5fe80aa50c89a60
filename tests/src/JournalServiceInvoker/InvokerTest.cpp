// The operation that each method calls, and the one response to the client.

#include "journalservice/JournalServiceInvoker.h"

#include <deque>
#include <memory>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "journalservice/JournalServiceObserverProxy.h"
#include "platform/framework/Executable.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeFrameworkContext.h"
#include "tests/support/FakeJournalService.h"
#include "tests/support/RecordingResponse.h"
#include "tests/support/Table.h"

// Declared as a framework uses it: by name only.
extern "C" void* createJournalServiceInvoker() noexcept;

namespace journaltest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kComponent = "Journal Service Invoker";

/// Returns the payload as text: "none" without one, else its texts: "true", "missed m1 missed m2".
std::string sentBy(const RecordingResponse& response) {
    EXPECT_EQ(response.completions(), 1);
    if (!response.hasPayload()) {
        return "none";
    }
    std::string texts;
    for (const std::string& word :
         split(std::regex_replace(response.payload(), std::regex("<[^>]*>"), " "), ' ')) {
        texts += (texts.empty() || word.empty() ? "" : " ") + word;
    }
    return texts;
}

template <typename Item>
std::deque<Item> itemsWithIds(const std::string& first, const std::string& second) {
    std::deque<Item> items(2);
    items.front().setEntryId(first);
    items.back().setEntryId(second);
    return items;
}

/// Builds a request; each argument is an entry id, "Field=value", or an element.
std::string requestOf(const std::string& method, const std::string& arguments = "") {
    std::string body = "<Method>" + method + "</Method>";
    for (const std::string& word : split(arguments, ' ')) {
        const auto equals = word.find('=');
        const std::string field = equals == std::string::npos ? "EntryId" : word.substr(0, equals);
        body += word[0] == '<' ? word : "<" + field + ">" + word.substr(equals + 1) + "</" + field + ">";
    }
    return "<JournalRequest>" + body + "</JournalRequest>";
}

/// An invoker and a journal with two entries in each list.
class InvokerTest : public testing::Test {
protected:
    std::unique_ptr<FakeJournalService> journal;
    FakeFrameworkContext framework;
    const std::unique_ptr<Invoker> invoker{static_cast<Invoker*>(createJournalServiceInvoker())};

    InvokerTest() {
        newJournal();
        invoker->initInvoker(&framework);
    }
    /// Selects the behaviour of the journal: "yes", "no", "throws", or "none" in its lists.
    void newJournal(const std::string& behaviour = "yes") {
        journal = std::make_unique<FakeJournalService>();
        journal->setResponse(behaviour != "no");
        if (behaviour == "throws") {
            journal->setDuring([] { throw std::runtime_error("disk on fire"); });
        }
        if (behaviour != "none") {
            journal->lists = {
                itemsWithIds<MissedCallItem>("m1", "m2"), itemsWithIds<DialledCallItem>("d1", "d2"),
                itemsWithIds<ReceivedCallItem>("r1", "r2"), itemsWithIds<ForwardedCallItem>("f1", "f2"),
                itemsWithIds<CallBackItem>("b1", "b2")};
        }
    }
    std::string responseTo(const std::string& message, const std::string& client = "ada") {
        RecordingResponse response(client);
        invoker->handleMessage(journal.get(), message.data(), static_cast<int>(message.size()), &response);
        return sentBy(response);
    }
};

TEST_F(InvokerTest, CallsTheOperationOfEachMethodAndRespondsOnce) {
    for (const auto& row : table(5, R"(
        0  | m2       | yes     | getMissedCall(m2)                          | missed m2
        0  | x        | yes     | getMissedCall(x)                           | missed
        0  | m1       | throws  | getMissedCall(m1)                          | failure
        1  | <ENTRY><EntryId>m9</EntryId></ENTRY> | yes | updateMissedCall(m9) | failure
        2  |          | yes     | getMissedCallList()                        | missed m1 missed m2
        2  |          | none | getMissedCallList()                        |
        3  | e1       | yes     |                                            | failure
        4  | e3 e1 e1 | yes     | setMissedCallListAsViewed({e1, e3})        | true
        4  |          | yes     | setMissedCallListAsViewed({})              | true
        5  | m1       | yes     | ageMissedCall(m1)                          | none
        7  | e1 e2    | yes     | deleteMissedCall(e1, false)                | true
        7  | e1       | no      | deleteMissedCall(e1, false)                | failure
        8  | e1 e2    | yes     | deleteMissedCallList({e1, e2})             | true
        9  | d2       | yes     | getDialledCall(d2)                         | dialled d2
        10 |          | yes     | getDialledCallList()                       | dialled d1 dialled d2
        11 | e1       | yes     | deleteDialledCall(e1)                      | true
        12 | e1 e2    | yes     | deleteDialledCallList({e1, e2})            | true
        13 | r2       | yes     | getReceivedCall(r2)                        | received r2
        14 |          | yes     | getReceivedCallList()                      | received r1 received r2
        15 | e1       | yes     | deleteReceivedCall(e1)                     | true
        16 | e1 e2    | yes     | deleteReceivedCallList({e1, e2})           | true
        17 | f2       | yes     | getForwardedCall(f2)                       | forwarded f2
        18 |          | yes     | getForwardedCallList()                     | forwarded f1 forwarded f2
        19 | e1       | yes     | deleteForwardedCall(e1)                    | true
        20 | e1 e2    | yes     | deleteForwardedCallList({e1, e2})          | true
        21 |          | yes     | getCallBackList()                          | callback b1 callback b2
        22 | e1       | yes     | deleteCallBack(e1)                         | true
        23 | e1 e2    | yes     | deleteCallBackList({e1, e2})               | true
        24 |          | yes     | getLastDialledNumber()                     | dialled d1
        27 |          | yes     | refreshCallLog()                           | true
        28 |          | yes     | refreshCallLists()                         | true
        36 | m1 d1    | yes     | deleteCalls({d1, m1}, false)               | true
        36 | m1 SendDeleteMissedCallRequest=true | yes | deleteCalls({m1}, true) | true
        37 |          | yes     | deleteAllCalls()                           | true
        38 | Value=x  | no      | setJournalServiceCallLogEventsDisabling(x) | none
        38 |          | yes     |                                            | failure
        40 |          | no      | resetUserCalls()                           | none
        99 | e1       | yes     |                                            | failure
        )")) {
        SCOPED_TRACE("method " + row[0] + " of " + row[1] + ", journal: " + row[2]);
        CapturedLog::reset();
        newJournal(row[2]);
        EXPECT_EQ(responseTo(requestOf(row[0], row[1])), row[4]);
        EXPECT_EQ(journal->calls(), row[3].empty() ? std::vector<std::string>() : std::vector{row[3]});
        // A refusal is no error and is not logged.
        EXPECT_EQ(CapturedLog::lines(kComponent).size(), row[2] == "throws" ? 1U : 0U);
    }
}

TEST_F(InvokerTest, SubscribesTheProxyOfTheRequestingClient) {
    class OtherProxy final : public Proxy {
    public:
        void initProxy(ProxyRequest& /*request*/) override {}
    };
    JournalServiceObserverProxy ofAda;
    JournalServiceObserverProxy ofBob;
    OtherProxy ofEve;
    framework.proxies[{"JournalServiceObserverIfc", "ada"}] = &ofAda;
    framework.proxies[{"JournalServiceObserverIfc", "bob"}] = &ofBob;
    framework.proxies[{"JournalServiceObserverIfc", "eve"}] = &ofEve;
    framework.proxies[{"SomeOtherIfc", "mallory"}] = &ofAda;
    for (const auto& row : table(5, R"(
        25 | ada     | yes    | true    |
        25 | bob     | no     | false   |
        26 | bob     | yes    | true    |
        26 | ada     | no     | false   |
        25 | ada     | throws | failure | disk on fire
        25 | eve     | yes    | failure | Observer interface is NULL
        26 | mallory | yes    | failure | Observer proxy is NULL
        )")) {
        SCOPED_TRACE(row[0] + " for " + row[1] + ", journal: " + row[2]);
        CapturedLog::reset();
        newJournal(row[2]);
        EXPECT_EQ(responseTo(requestOf(row[0]), row[1]), row[3]);
        EXPECT_TRUE(row[4].empty() || CapturedLog::contains(row[4])) << CapturedLog::dump();
        if (row[1] == "ada" || row[1] == "bob") {
            EXPECT_THAT(journal->calls(), ElementsAre(row[0] == "25" ? "subscribeForJournalEvents()"
                                                                     : "unsubscribeForJournalEvents()"));
            EXPECT_THAT(journal->observers(), ElementsAre(row[1] == "ada" ? &ofAda : &ofBob));
        } else {
            EXPECT_THAT(journal->calls(), IsEmpty());
        }
    }
    invoker->initInvoker(nullptr);
    EXPECT_EQ(responseTo(requestOf("25")), "failure");
}

TEST_F(InvokerTest, FailsWithoutAJournalOrBytes) {
    class OtherService final : public Executable {};
    OtherService other;
    const std::string message = requestOf("7", "m1") + "<EntryId>m2</EntryId>";
    const int length = static_cast<int>(requestOf("7", "m1").size());
    const auto responseFrom = [this](Executable* target, const char* text, int size) {
        RecordingResponse response;
        invoker->handleMessage(target, text, size, &response);
        return sentBy(response);
    };
    for (Executable* const target : {static_cast<Executable*>(nullptr), static_cast<Executable*>(&other)}) {
        EXPECT_EQ(responseFrom(target, message.data(), length), "failure");
    }
    EXPECT_EQ(responseFrom(journal.get(), nullptr, 10), "failure");
    for (const int wrong : {0, -1, length - 1}) {
        EXPECT_EQ(responseFrom(journal.get(), message.data(), wrong), "failure") << wrong;
    }
    EXPECT_EQ(responseFrom(journal.get(), message.data(), length), "true");
    invoker->handleMessage(journal.get(), message.data(), length, nullptr);
    EXPECT_THAT(journal->calls(), ElementsAre("deleteMissedCall(m1, false)"));
    EXPECT_THAT(CapturedLog::lines(kComponent),
                ElementsAre("Journal Service interface is NULL", "Journal Service interface is NULL",
                            "Invoker response is NULL"));
}

TEST_F(InvokerTest, LogsExceptionsAndCompletesTheResponse) {
    class BrokenResponse final : public InvokerResponse {
    public:
        int completions = 0;
        void setPayload(const char* /*text*/, int /*length*/) override {
            throw std::runtime_error("pipe broken");
        }
        void complete() override {
            ++completions;
            throw std::runtime_error("client gone");
        }
        [[nodiscard]] std::string getRequester() const override { return {}; }
        [[nodiscard]] std::string getRequestedProtocol() const override { return {}; }
    };
    BrokenResponse response;
    const std::string message = requestOf("2");
    invoker->handleMessage(journal.get(), message.data(), static_cast<int>(message.size()), &response);
    EXPECT_EQ(response.completions, 1);
    EXPECT_TRUE(CapturedLog::contains("pipe broken") && CapturedLog::contains("client gone"));
    journal->setDuring([] { throw 42; });
    EXPECT_EQ(responseTo(requestOf("2")), "failure");
}

}  // namespace
}  // namespace journaltest
