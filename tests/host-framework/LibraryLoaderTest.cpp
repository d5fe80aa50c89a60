#include "host/framework/LibraryLoader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/framework/InvokerResponse.h"
#include "platform/framework/ProxyRequest.h"
#include "tests/support/TemporaryDirectory.h"

namespace host {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

class RecordingChannel final : public ProxyRequest {
public:
    void selectProtocol(const std::string&) override {}
    void send(const std::string& request) override { m_sent = request; }
    std::string m_sent;
};

class RecordingResponse final : public InvokerResponse {
public:
    void setPayload(const char* text, int length) override {
        m_payload.assign(text, static_cast<std::size_t>(length));
    }
    void complete() override { ++m_completions; }
    [[nodiscard]] std::string getRequester() const override { return "somebody"; }
    [[nodiscard]] std::string getRequestedProtocol() const override { return "opera_text"; }
    std::string m_payload;
    int m_completions = 0;
};

template <typename Function>
std::string errorOf(const Function& function) {
    try {
        function();
    } catch (const LibraryError& error) {
        return error.what();
    }
    return "no error";
}

TEST(LibraryLoader, MakesServiceInvokerAndProxyThatWorkThroughTheirBases) {
    const LibraryLoader library(LOADER_GOOD);
    const auto service = library.createJournalService();
    const auto invoker = library.createJournalServiceInvoker();
    const auto proxy = library.createJournalServiceObserverProxy();

    service->run();
    RecordingResponse response;
    invoker->handleMessage(service.get(), "hello", 5, &response);
    EXPECT_EQ(response.m_payload, "hello");
    library.createContactGetterInvoker()->handleMessage(service.get(), "contacts", 8, &response);
    EXPECT_EQ(response.m_payload, "contacts");
    EXPECT_EQ(response.m_completions, 2);

    RecordingChannel channel;
    proxy->initProxy(channel);
    EXPECT_EQ(channel.m_sent, "proxy is there");
}

TEST(LibraryLoader, NamesTheFileThatIsNotThere) {
    EXPECT_THAT(errorOf([] { LibraryLoader("/nowhere/libjournalservice.so"); }),
                HasSubstr("cannot load the service library /nowhere/libjournalservice.so"));
}

TEST(LibraryLoader, NamesTheFactoryThatTheLibraryLacks) {
    const LibraryLoader library(LOADER_EMPTY);
    EXPECT_THAT(errorOf([&] { static_cast<void>(library.createJournalService()); }),
                AllOf(HasSubstr(LOADER_EMPTY), HasSubstr("does not export createJournalService:")));
    EXPECT_THAT(errorOf([&] { static_cast<void>(library.createJournalServiceInvoker()); }),
                HasSubstr("does not export createJournalServiceInvoker:"));
    EXPECT_THAT(errorOf([&] { static_cast<void>(library.createJournalServiceObserverProxy()); }),
                HasSubstr("does not export createJournalServiceObserverProxy:"));
    EXPECT_THAT(errorOf([&] { static_cast<void>(library.createContactGetterInvoker()); }),
                HasSubstr("does not export createContactGetterInvoker:"));
}

TEST(LibraryLoader, SaysAtOnceWhatTheProgramDoesNotProvide) {
    EXPECT_THAT(errorOf([] { const LibraryLoader library(LOADER_UNRESOLVED); }),
                HasSubstr("noProgramHasThisFunction"));
}

TEST(LibraryLoader, LooksBesideTheProgramFirstAndThenInLib) {
    namespace fs = std::filesystem;
    const TemporaryDirectory directory;
    const fs::path root = directory.path();
    fs::create_directories(root / "bin");
    fs::create_directories(root / "lib");
    const auto locate = [&] { return LibraryLoader::locate("libx.so", root / "bin"); };

    EXPECT_THAT(errorOf([&] { static_cast<void>(locate()); }),
                AllOf(HasSubstr((root / "bin" / "libx.so").string()),
                      HasSubstr((root / "lib" / "libx.so").string())));
    std::ofstream(root / "lib" / "libx.so") << "x";
    EXPECT_EQ(locate(), root / "lib" / "libx.so");
    std::ofstream(root / "bin" / "libx.so") << "x";
    EXPECT_EQ(locate(), root / "bin" / "libx.so");
}

}  // namespace
}  // namespace host
