#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

#include "fuzz/support/Property.h"
#include "journalservice/JournalService.h"
#include "journalservice/JournalServiceInvoker.h"
#include "platform/client-utils/Utf8.h"
#include "platform/framework/Context.h"
#include "platform/framework/InvokerResponse.h"
#include "platform/hardware/HardwareVersion.h"
#include "platform/journal-library/ClientRequest.h"
#include "platform/journal-library/JournalServiceHelper.h"

// Feeds any bytes of a remote client to the invoker. Each message must get exactly one response, and the next
// valid request must still return its list.

int HardwareVersion::getHWSubPlatformVariant() noexcept {
    return 0;
}

namespace {

/// A phone without any service.
class BareContext final : public Context {
public:
    [[nodiscard]] Executable* findService(const std::string& /*name*/) override { return nullptr; }
    [[nodiscard]] int createTimer(Executable& /*handler*/, int /*milliseconds*/) override { return -1; }
    bool startTimer(int /*id*/) override { return false; }
    bool stopTimer(int /*id*/) override { return false; }
    bool restartTimer(int /*id*/) override { return false; }
    bool deleteTimer(int /*id*/) override { return false; }
    [[nodiscard]] bool isTimerRunning(int /*id*/) override { return false; }
};

struct Response final : public InvokerResponse {
    void setPayload(const char* text, int length) override {
        payload.assign(text, static_cast<std::size_t>(length));
    }
    void complete() override { ++completions; }
    [[nodiscard]] std::string getRequester() const override { return "client"; }
    [[nodiscard]] std::string getRequestedProtocol() const override { return "opera_text"; }

    std::string payload;
    int completions = 0;
};

struct Phone {
    Phone() { journal.init(context); }

    std::string handle(const char* message, std::size_t size) {
        Response response;
        invoker.handleMessage(&journal, message, static_cast<int>(size), &response);
        fuzz::require(response.completions == 1, "a message has not one response");
        fuzz::require(utf8::isXmlText(response.payload), "a response has bytes that XML forbids");
        return response.payload;
    }

    BareContext context;
    JournalService journal{nullptr};
    JournalServiceInvoker invoker;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Phone phone;
    phone.handle(reinterpret_cast<const char*>(data), size);
    const std::string valid = journalxml::buildRequest(journalxml::MethodId::eGetMissedCallList);
    std::deque<MissedCallItem> list;
    fuzz::require(
        JournalServiceHelper::parseXMLMissedCallList(phone.handle(valid.data(), valid.size()), list),
        "a valid request after it fails");
    return 0;
}
