#include <stdexcept>

#include "include/JournalServiceObserverProxy.h"
#include "tests/invoker/InvokerFixture.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kComponent = "Journal Service Invoker";
constexpr const char* kInterface = "JournalServiceObserverIfc";

class OtherProxy final : public Proxy {
public:
    void initProxy(ProxyRequest& /*request*/) override {}
};

class InvokerSubscription : public InvokerTest {
protected:
    JournalServiceObserverProxy ofAda;
    JournalServiceObserverProxy ofBob;
    OtherProxy ofEve;

    void SetUp() override {
        InvokerTest::SetUp();
        framework.addProxy(kInterface, "ada", &ofAda);
        framework.addProxy(kInterface, "bob", &ofBob);
        framework.addProxy(kInterface, "eve", &ofEve);
        framework.addProxy("SomeOtherIfc", "mallory", &ofAda);
    }

    std::string answerTo(const std::string& client, int id) {
        RecordingResponse response(client);
        handle(requestOf(id), response);
        EXPECT_EQ(response.completions(), 1);
        EXPECT_FALSE(response.usedAfterCompletion());
        return readBack(response);
    }
};

TEST_F(InvokerSubscription, IsMadeAndEndedForTheProxyOfTheClientWhoAsks) {
    EXPECT_EQ(answerTo("ada", 25), "true");
    EXPECT_EQ(answerTo("bob", 25), "true");
    EXPECT_EQ(answerTo("ada", 26), "true");
    EXPECT_THAT(journal.calls(), ElementsAre("subscribeForJournalEvents", "subscribeForJournalEvents",
                                             "unsubscribeForJournalEvents"));
    EXPECT_THAT(journal.observers(), ElementsAre(&ofAda, &ofBob, &ofAda));
}

TEST_F(InvokerSubscription, ThatTheJournalRefusesIsAnsweredSo) {
    journal.setAnswer(false);
    EXPECT_EQ(answerTo("ada", 25), "false");
    EXPECT_EQ(answerTo("ada", 26), "false");
}

TEST_F(InvokerSubscription, OfAClientWithoutProxyFails) {
    for (const int id : {25, 26}) {
        CapturedLog::reset();
        EXPECT_EQ(answerTo("mallory", id), "failure");
        EXPECT_THAT(CapturedLog::lines(kComponent), ElementsAre("Observer proxy is NULL"));
    }
    EXPECT_THAT(journal.calls(), IsEmpty());
}

TEST_F(InvokerSubscription, OfAProxyThatIsNoObserverFails) {
    for (const int id : {25, 26}) {
        CapturedLog::reset();
        EXPECT_EQ(answerTo("eve", id), "failure");
        EXPECT_THAT(CapturedLog::lines(kComponent), ElementsAre("Observer interface is NULL"));
    }
    EXPECT_THAT(journal.calls(), IsEmpty());
}

TEST_F(InvokerSubscription, WithoutAFrameworkFails) {
    JournalServiceInvoker alone;
    const std::string message = requestOf(25);
    RecordingResponse response("ada");
    alone.handleMessage(&journal, message.data(), static_cast<int>(message.size()), &response);
    EXPECT_EQ(readBack(response), "failure");
    EXPECT_TRUE(CapturedLog::contains("Observer proxy is NULL"));
}

TEST_F(InvokerSubscription, AtAThrowingJournalFails) {
    journal.setDuring([] { throw std::runtime_error("full house"); });
    EXPECT_EQ(answerTo("ada", 25), "failure");
    EXPECT_EQ(answerTo("ada", 26), "failure");
    EXPECT_EQ(CapturedLog::count("full house"), 2);
}

}  // namespace
}  // namespace journaltest
