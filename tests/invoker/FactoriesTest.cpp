#include <memory>

#include "include/JournalServiceObserverProxy.h"
#include "tests/invoker/InvokerFixture.h"

// As a framework finds them: by name, knowing nothing but that an object comes back.
extern "C" void* createJournalServiceInvoker() noexcept;
extern "C" void* createJournalServiceObserverProxy() noexcept;

namespace journaltest {
namespace {

TEST(Factories, MakeAnInvokerThatTheFrameworkOwns) {
    const std::unique_ptr<Invoker> invoker(static_cast<Invoker*>(createJournalServiceInvoker()));
    ASSERT_NE(invoker, nullptr);
    FakeFrameworkContext framework;
    invoker->initInvoker(&framework);
    FakeJournalService journal;
    RecordingResponse response;
    const std::string message = requestOf(27);
    invoker->handleMessage(&journal, message.data(), static_cast<int>(message.size()), &response);
    EXPECT_EQ(readBack(response), "true");
}

TEST(Factories, MakeAProxyThatIsAnObserverToo) {
    const std::unique_ptr<Proxy> proxy(static_cast<Proxy*>(createJournalServiceObserverProxy()));
    ASSERT_NE(proxy, nullptr);
    RecordingProxyRequest request;
    proxy->initProxy(request);
    auto* const observer = dynamic_cast<JournalServiceObserverIfc*>(proxy.get());
    ASSERT_NE(observer, nullptr);
    observer->missedCallsCountUpdate(1);
    EXPECT_EQ(request.sent().size(), 1U);
}

}  // namespace
}  // namespace journaltest
