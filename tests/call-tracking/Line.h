#pragma once

#include <deque>
#include <string>
#include <vector>

#include "include/ObserverNotifier.h"
#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "platform/csta/CSTAEventIfc.h"
#include "platform/csta/CSTASystemEvents.h"
#include "platform/framework/Service.h"
#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/JournalParts.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeContext.h"
#include "tests/support/FakeDataAccess.h"
#include "tests/support/FakeDigits.h"
#include "tests/support/FakeDirectory.h"

namespace journaltest {

inline CSTADevice from(std::string number, std::string name = {}) {
    return {std::move(number), std::move(name)};
}
inline CSTADevice to(std::string number, std::string name = {}) {
    return {std::move(number), std::move(name)};
}
inline CSTADevice here() {
    return {CSTADevice::kLocalDevice, {}};
}
inline CSTADevice nobody() {
    return {};
}

/// A line with all parts of the journal but its face, between faked platform services. Its operations are
/// what happens on the line, told as the events that a switch sends; a test reads as a script and ends with the
/// journal. The clock stands still unless the script lets time pass.
class Line final : public Service, public CSTAEventIfc, private CSTAEventObserverBase {
public:
    explicit Line(const char* softwareType = softwareTypes::qorvex);
    ~Line() override;

    /// What an event carries beside its call and its main party.
    struct With {
        int cause = CSTA_EC_NewCall;
        CSTADevice redirectedBy{};
        std::string privateData{};
        std::string device = CSTADevice::kLocalDevice;
        int localConnection = -1;
    };

    // An incoming call.
    void offers(const std::string& callId);
    void rings(const std::string& callId, const CSTADevice& caller, const With& with);
    void rings(const std::string& callId, const CSTADevice& caller) { rings(callId, caller, With{}); }
    void answers(const std::string& callId, const CSTADevice& caller, const CSTADevice& redirectedBy = {});
    // An outgoing one.
    void dials(const std::string& callId, const CSTADevice& called, int cause = CSTA_EC_NewCall);
    void ringsAt(const std::string& callId, const CSTADevice& called, const CSTADevice& alerting,
                 int cause = CSTA_EC_NewCall);
    void isAnsweredBy(const std::string& callId, const CSTADevice& called, const CSTADevice& answering,
                      int cause = CSTA_EC_NewCall);
    // Either.
    void queues(const std::string& callId, const CSTADevice& calling, const CSTADevice& called);
    void isEstablished(const std::string& callId, const CSTADevice& calling, const CSTADevice& called,
                       const CSTADevice& answering);
    void holds(const std::string& callId, int cause = CSTA_EC_Alternate);
    void retrieves(const std::string& callId, bool mediaServer);
    void diverts(const std::string& callId, const CSTADevice& calling, const CSTADevice& called,
                 const CSTADevice& newDestination);
    void fails(const std::string& callId, const CSTADevice& calling, const CSTADevice& called, int cause);
    void hangsUp(const std::string& callId, int cause = CSTA_EC_NormalClearing,
                 const std::string& device = "2001");
    void reports(const std::string& systemStatus);

    void passes(long seconds) { clock.advance(seconds); }
    template <typename Change>
    void configure(Change change) {
        settings.change(change);
    }

    /// Every occurrence of every list in one line: "missed 4711 Ann", "received 4711 Ann 01:05", newest first, the
    /// lists in the order missed, dialled, received, forwarded. After the number and the name stand, where there is
    /// one, the duration, "by" the redirecting party, "to" the connected or forwarded-to number, and marks.
    [[nodiscard]] std::vector<std::string> journal();
    [[nodiscard]] std::size_t liveCalls() const { return calls.getNumberOfCalls(); }
    [[nodiscard]] const journal::Call* call(const std::string& callId) const {
        return calls.findCallFromId(callId);
    }

    template <typename Item>
    [[nodiscard]] std::deque<Item> list() {
        const auto items = parts.lists.list<Item>().access();
        return *items;
    }

    void run() override {}
    void timerEvent(int id) override { parts.blindTransfer.onTimer(id); }
    void deliverEvent(CSTAEvent* event) override;

    FakeContext context;
    FakeClock clock;
    FakeDirectory phonebook;
    FakeDigits digits;
    FakeDataAccess database;
    ObserverNotifier notifier;
    journal::JournalParts parts{{notifier, *this, *this, [] {}}};
    journal::PhoneSettings& settings = parts.settings;
    journal::CallMap& calls = parts.calls;
    journal::Conferences& conferences = parts.conferences;

private:
    void handleCSTAOriginatedEvent(CSTAOriginatedEvent* event) override;
    void handleCSTAOfferedEvent(CSTAOfferedEvent* event) override;
    void handleCSTAQueuedEvent(CSTAQueuedEvent* event) override;
    void handleCSTADeliveredEvent(CSTADeliveredEvent* event) override;
    void handleCSTADivertedEvent(CSTADivertedEvent* event) override;
    void handleCSTAEstablishedEvent(CSTAEstablishedEvent* event) override;
    void handleCSTAFailedEvent(CSTAFailedEvent* event) override;
    void handleCSTAHeldEvent(CSTAHeldEvent* event) override;
    void handleCSTARetrievedEvent(CSTARetrievedEvent* event) override;
    void handleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event) override;
    void handleCSTASystemStatusEvent(CSTASystemStatusEvent* event) override;
};

}  // namespace journaltest
