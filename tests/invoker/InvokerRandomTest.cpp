// Whatever arrives is answered exactly once.

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>

#include "tests/invoker/InvokerFixture.h"

namespace journaltest {
namespace {

/// Requests and noise, damaged here and there, the same ones in every run.
class DamagedMessages {
public:
    std::string next() {
        std::string message = below(10) == 0 ? noise(below(400))
                                             : requestOf(kMethodIds[below(kMethodIds.size())], {"m1", "m2"});
        for (std::size_t damage = below(4); damage > 0; --damage) {
            const std::size_t at = below(message.size() + 1);
            const std::size_t length = below(message.size() - at + 1);
            switch (below(5)) {
                case 0: message.insert(at, noise(below(8))); break;
                case 1: message.insert(at, kTexts[below(std::size(kTexts))]); break;
                case 2: message.insert(at, message.substr(at, length)); break;
                case 3: message.erase(at, length / 4); break;
                default: message.replace(at, std::min<std::size_t>(length, 1), noise(1)); break;
            }
        }
        return message;
    }

private:
    static constexpr const char* kTexts[] = {"<Method>7</Method>",
                                             "<EntryId>x</EntryId>",
                                             "<x/>",
                                             "99999999999",
                                             "&#0;",
                                             "<![CDATA[",
                                             "<!DOCTYPE a [<!ENTITY b '&b;&b;'>]>",
                                             "<ENTRY><Type>missed</Type>",
                                             "<a><a><a><a><a><a><a><a><a><a><a><a><a><a><a><a><a>",
                                             "\xee\xb8\x80"};

    std::size_t below(std::size_t bound) { return bound == 0 ? 0 : m_random() % bound; }
    std::string noise(std::size_t length) {
        std::string bytes(length, ' ');
        std::generate(bytes.begin(), bytes.end(), [this] { return static_cast<char>(below(256)); });
        return bytes;
    }

    std::mt19937 m_random{4711};
};

class InvokerOnBytes : public InvokerTest {
protected:
    /// Answered once, with the failure text where it came to no operation; and the next good message is served.
    void survives(const std::string& message) {
        FakeJournalService asked;
        RecordingResponse response;
        invoker.handleMessage(&asked, message.data(), static_cast<int>(message.size()), &response);
        ASSERT_EQ(response.completions(), 1);
        ASSERT_FALSE(response.usedAfterCompletion());
        ASSERT_LE(asked.calls().size(), 1U);
        if (asked.calls().empty()) {
            ASSERT_EQ(response.payload(), JournalServiceHelper::FAILURE);
        }
        ASSERT_EQ(answerTo(requestOf(2)), "missed m1 m2");
    }
};

TEST_F(InvokerOnBytes, DamagedMessagesHarmNobody) {
    DamagedMessages messages;
    for (int count = 0; count < 20000 && !HasFatalFailure(); ++count) {
        const std::string message = messages.next();
        SCOPED_TRACE(testing::PrintToString(message));
        survives(message);
    }
}

TEST_F(InvokerOnBytes, MessagesUpToTheBoundAndBeyondHarmNobody) {
    constexpr std::size_t kBound = 1024 * 1024;
    for (const std::string text : {"<", "<a>", "<a/>", "&amp;", "<EntryId>x</EntryId>", "\xff", "<!--"}) {
        std::string message = "<r><Method>8</Method>";
        while (message.size() < kBound) {
            message += text;
        }
        for (const std::size_t size : {kBound - 1, kBound, kBound + 1}) {
            SCOPED_TRACE(text);
            survives(message.substr(0, size));
        }
    }
}

RC_GTEST_PROP(InvokerOnRandomBytes, PassesOnWhateverBytesAnEntryIdHolds, (const std::string& entryId)) {
    FakeJournalService journal;
    JournalServiceInvoker invoker;
    RecordingResponse response;
    const std::string message = requestOf(11, {entryId});
    invoker.handleMessage(&journal, message.data(), static_cast<int>(message.size()), &response);
    RC_ASSERT(journal.calls() == std::vector<std::string>{"deleteDialledCall(" + entryId + ")"});
}

}  // namespace
}  // namespace journaltest
