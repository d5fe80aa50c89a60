// Whatever arrives is answered exactly once.

#include <rapidcheck/gtest.h>

#include "tests/invoker/InvokerFixture.h"

namespace journaltest {
namespace {

void answersOnce(const std::string& message) {
    FakeJournalService journal;
    JournalServiceInvoker invoker;
    RecordingResponse response;
    invoker.handleMessage(&journal, message.data(), static_cast<int>(message.size()), &response);
    RC_ASSERT(response.completions() == 1);
    RC_ASSERT(!response.usedAfterCompletion());
    RC_ASSERT(journal.calls().size() <= 1U);
}

RC_GTEST_PROP(InvokerOnRandomBytes, AnswersOnce, (const std::string& bytes)) {
    answersOnce(bytes);
}

RC_GTEST_PROP(InvokerOnRandomBytes, AnswersOnceInsideTheFrameOfARequest,
              (const std::vector<std::string>& entryIds, const std::string& garbage)) {
    std::string message = requestOf(*rc::gen::inRange(-5, 60), entryIds);
    const std::size_t at = *rc::gen::inRange<std::size_t>(0, message.size() + 1);
    message.insert(at, garbage);
    answersOnce(message);
}

RC_GTEST_PROP(InvokerOnRandomBytes, AnswersOnceToADamagedRequest, ()) {
    std::string message = requestOf(*rc::gen::elementOf(kMethodIds), {"m1", "m2"});
    const int damages = *rc::gen::inRange(1, 6);
    for (int damage = 0; damage < damages; ++damage) {
        message[*rc::gen::inRange<std::size_t>(0, message.size())] = *rc::gen::arbitrary<char>();
    }
    message.resize(*rc::gen::inRange<std::size_t>(0, message.size() + 1));
    answersOnce(message);
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
