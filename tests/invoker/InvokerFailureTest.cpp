#include <stdexcept>
#include <thread>
#include <utility>

#include "platform/framework/Executable.h"
#include "tests/invoker/InvokerFixture.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kComponent = "Journal Service Invoker";

using InvokerFailure = InvokerTest;

TEST_F(InvokerFailure, WithoutResponseLeavesOnlyALogLine) {
    const std::string message = requestOf(7, {"m1"});
    invoker.handleMessage(&journal, message.data(), static_cast<int>(message.size()), nullptr);
    EXPECT_THAT(journal.calls(), IsEmpty());
    EXPECT_THAT(CapturedLog::lines(kComponent), ElementsAre("Invoker response is NULL"));
    EXPECT_EQ(CapturedLog::lines().front().level, 2);
}

TEST_F(InvokerFailure, WithoutTargetOrWithAnotherServiceIsAnswered) {
    class OtherService final : public Executable {};
    OtherService other;
    const std::string message = requestOf(2);
    for (Executable* const target : {static_cast<Executable*>(nullptr), static_cast<Executable*>(&other)}) {
        CapturedLog::reset();
        RecordingResponse response;
        invoker.handleMessage(target, message.data(), static_cast<int>(message.size()), &response);
        EXPECT_EQ(readBack(response), "failure");
        EXPECT_EQ(response.completions(), 1);
        EXPECT_THAT(CapturedLog::lines(kComponent), ElementsAre("Journal Service interface is NULL"));
    }
}

TEST_F(InvokerFailure, OfAMessageWithoutBytesIsAnswered) {
    const std::string message = requestOf(2);
    const std::pair<const char*, int> messages[] = {
        {nullptr, 0}, {nullptr, 10}, {message.data(), 0}, {message.data(), -1}};
    for (const auto& [text, length] : messages) {
        RecordingResponse response;
        invoker.handleMessage(&journal, text, length, &response);
        EXPECT_EQ(readBack(response), "failure");
        EXPECT_EQ(response.completions(), 1);
    }
    EXPECT_THAT(journal.calls(), IsEmpty());
    EXPECT_THAT(CapturedLog::lines(kComponent), IsEmpty());
}

TEST_F(InvokerFailure, OfAThrowingJournalIsAnsweredAndLoggedForEveryMethod) {
    for (const int id : kMethodIds) {
        if (id == 25 || id == 26) {
            continue;  // they need an observer: InvokerSubscriptionTest
        }
        CapturedLog::reset();
        journal.setDuring([] { throw std::runtime_error("disk on fire"); });
        EXPECT_EQ(answerTo(journalxml::buildRequest(static_cast<journalxml::MethodId>(id), {"m1"}, "true")),
                  "failure")
            << id;
        EXPECT_TRUE(CapturedLog::contains("disk on fire")) << id;

        journal.setDuring([] { throw 42; });
        EXPECT_EQ(answerTo(journalxml::buildRequest(static_cast<journalxml::MethodId>(id), {"m1"}, "true")),
                  "failure")
            << id;
    }
}

TEST_F(InvokerFailure, OfTheResponseItselfStillCompletesIt) {
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
    const std::string message = requestOf(2);
    EXPECT_NO_THROW(
        invoker.handleMessage(&journal, message.data(), static_cast<int>(message.size()), &response));
    EXPECT_EQ(response.completions, 1);
    EXPECT_TRUE(CapturedLog::contains("pipe broken"));
    EXPECT_TRUE(CapturedLog::contains("client gone"));
}

TEST_F(InvokerFailure, IsNeverLoggedForOrdinaryRefusals) {
    journal.setAnswer(false);
    answerTo(requestOf(7, {"x"}));
    answerTo(requestOf(7));
    answerTo(requestOf(99));
    answerTo("no XML at all");
    EXPECT_THAT(CapturedLog::lines(kComponent), IsEmpty());
}

TEST_F(InvokerFailure, OfOneThreadLeavesTheOthersAlone) {
    CapturedLog::switchOff();  // its lock would order the threads
    const auto asks = [this](int id, const char* entryId, const char* expected) {
        for (int round = 0; round < 200; ++round) {
            ASSERT_EQ(answerTo(requestOf(id, {entryId})), expected);
        }
    };
    std::thread missed(asks, 0, "m1", "missed m1");
    std::thread dialled(asks, 9, "d2", "dialled d2");
    std::thread nothing(asks, 99, "m1", "failure");
    missed.join();
    dialled.join();
    nothing.join();
}

}  // namespace
}  // namespace journaltest
