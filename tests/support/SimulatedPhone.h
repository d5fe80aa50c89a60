#pragma once

#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "journalservice/JournalServiceQorvexTel.h"
#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/JournalComponents.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeContext.h"
#include "tests/support/FakeCstaService.h"
#include "tests/support/FakeDataAccess.h"
#include "tests/support/FakeDigits.h"
#include "tests/support/FakeDirectory.h"
#include "tests/support/FakeLocalMgmt.h"
#include "tests/support/FakeServices.h"

namespace journaltest {

/// A telephone with the journal in it: the real service between faked platform services. A test plays a
/// script of events as a switch sends them, and compares the outcome as a text. The clock stands still unless
/// the script moves it.
///
/// A step is a verb with its words; ";" separates steps. A device is "4711", "4711:Ann_B" ("_" is a space),
/// ":Ann", "here" for the telephone itself, or "-" for none.
///     offers ID    rings ID CALLER    answers ID CALLER    misses ID CALLER                 an incoming call
///     dials ID CALLED    ringsAt ID CALLED ALERTING    reaches ID CALLED ANSWERING          an outgoing call
///     queues ID CALLING CALLED    established ID CALLING CALLED ANSWERING    informs ID DEVICE
///     member ID DEVICE    diverts ID CALLING CALLED TO    fails ID CALLING CALLED
///     holds ID [for-transfer]    retrieves ID    clears ID
///     transfers OLD SECONDARY NEW BY TO    conference ID PRIMARY DEVICE SECONDARY DEVICE
///     passes SECONDS    waits MILLISECONDS    status TEXT    logs LOG NUMBER    set NAME on|off
///     hardware NUMBER
/// Events take options: cause=NAME, by=DEVICE (the last redirection), at=DEVICE (of the connection),
/// local=STATE (of the connection at the telephone), private=TEXT, media=yes.
///
/// The thread that plays is the line's strand; the service takes client calls on any thread.
class SimulatedPhone {
public:
    explicit SimulatedPhone(const std::string& softwareType = softwaretypes::qorvex);
    SimulatedPhone(const SimulatedPhone&) = delete;
    SimulatedPhone& operator=(const SimulatedPhone&) = delete;
    ~SimulatedPhone() = default;

    /// The first event and the first look at the service start the telephone, too.
    void starts();
    void stops() { m_service.reset(); }

    /// Throws std::invalid_argument for a step without a verb of the list above: the test is wrong.
    void plays(const std::string& script);
    void delivers(CSTAEvent& event) { service().deliverEvent(&event); }

    /// Every occurrence of every list: "missed 4711 Ann, received 4712 01:05", newest first, the lists in the
    /// order missed, dialled, received, forwarded. Number and name precede, where there is one, the duration,
    /// "by" the redirecting party, "to" the connected or forwarded-to number, and marks.
    [[nodiscard]] std::string journal();
    /// The journal, and after a semicolon the live calls: "; 7 out Delivered dialled+remote[4711]". A record
    /// under an id that no step has named shows as "stray"; conferences and a clearing that is held back
    /// show, too.
    [[nodiscard]] std::string outcome();

    JournalServiceQorvexTel& service();
    [[nodiscard]] journal::JournalComponents& components();
    template <typename Change>
    void configure(Change change) {
        components().settings.change(change);
    }
    template <typename Item>
    [[nodiscard]] std::deque<Item> list() {
        const auto items = components().lists.read<Item>();
        return *items;
    }
    [[nodiscard]] std::deque<MissedCallItem> missed() { return list<MissedCallItem>(); }
    /// Gives the service one setting, as the management does; returns what the service returns.
    [[nodiscard]] bool takes(const std::string& key, const std::string& value);
    /// The service's value of a setting, or "refused".
    [[nodiscard]] std::string setting(const std::string& key);

    FakeContext context;
    FakeCstaService csta;
    FakeDataAccess database;
    FakeDirectory phonebook;
    FakeLocalMgmt management;
    FakeClock clock;
    FakeDigits digits;
    FakeMobility mobility;
    FakeTeam team{{"2051"}};
    FakeUC uc;
    FakePallax pallax;
    FakeWsi wsi;

private:
    class Service;
    struct Deleter {
        void operator()(Service* service) const;
    };
    struct Step {
        std::string verb;
        std::vector<std::string> words;
        std::map<std::string, std::string> options;

        [[nodiscard]] const std::string& word(std::size_t index) const { return words.at(index); }
        [[nodiscard]] CSTADevice device(std::size_t index) const;
    };
    static Step stepOf(const std::string& text);

    bool happensToCall(const Step& step);
    bool happensToConnection(const Step& step);
    bool happensToSeveralCalls(const Step& step);
    bool happensAround(const Step& step);
    template <typename Event>
    void deliver(Event event, Step step);

    std::set<std::string> m_callIds;
    std::unique_ptr<Service, Deleter> m_service;
};

/// Plays each row's script on telephones of these types: name | script | outcome | outcome on a SIP phone,
/// "=" for the same.
void expectOutcomes(const std::string& text,
                    const std::vector<const char*>& types = {softwaretypes::qorvex, softwaretypes::sip});

}  // namespace journaltest
