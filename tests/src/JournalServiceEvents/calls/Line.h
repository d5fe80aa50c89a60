#pragma once

#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "journalservice/ObserverNotifier.h"
#include "platform/csta/CSTAEventIfc.h"
#include "platform/framework/Service.h"
#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/JournalComponents.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeContext.h"
#include "tests/support/FakeDataAccess.h"
#include "tests/support/FakeDigits.h"
#include "tests/support/FakeDirectory.h"

namespace journaltest {

/// A line with all parts of the journal but its face, between faked platform services. What happens on it is a script of
/// events as a switch sends them; the outcome is a text. The clock stands still unless the script lets time pass.
///
/// A step is a verb with its words, steps stand between ";". A device is "4711", "4711:Ann_B" ("_" is a space),
/// ":Ann", "here", or "-" for none.
///     offers ID    rings ID CALLER    answers ID CALLER                                     a call to this phone
///     dials ID CALLED    ringsAt ID CALLED ALERTING    reaches ID CALLED ANSWERING          one from it
///     queues ID CALLING CALLED    established ID CALLING CALLED ANSWERING    informs ID DEVICE    member ID DEVICE
///     diverts ID CALLING CALLED TO    fails ID CALLING CALLED    holds ID [for-transfer]    retrieves ID    clears ID
///     transfers OLD SECONDARY NEW BY TO    conference ID PRIMARY DEVICE SECONDARY DEVICE
///     passes SECONDS    waits MILLISECONDS    status TEXT    set NAME on|off    hardware NUMBER
/// Events take options: cause=NAME, by=DEVICE (the last redirection), at=DEVICE (of the connection), local=NUMBER (the
/// phone's own connection), private=TEXT, media=yes.
class Line final : public Service, public CSTAEventIfc {
public:
    explicit Line(const std::string& softwareType = softwareTypes::qorvex);

    /// A step that is not understood is a mistake in the test and throws.
    void plays(const std::string& script);

    /// Every occurrence of every list: "missed 4711 Ann, received 4712 01:05", newest first, the lists in the order missed,
    /// dialled, received, forwarded. After number and name stand, where there is one, the duration, "by" the
    /// redirecting party, "to" the connected or forwarded-to number, and marks.
    [[nodiscard]] std::string journal();
    /// The journal, and after a semicolon what is still tracked: "; 7 out 2 dialled+remote[4711]". A record under
    /// an id that no step has named shows as "stray"; conferences and a clearing that is held back show, too.
    [[nodiscard]] std::string outcome();

    template <typename Change>
    void configure(Change change) {
        parts.settings.change(change);
    }
    template <typename Item>
    [[nodiscard]] std::deque<Item> list() {
        const auto items = parts.lists.list<Item>().access();
        return *items;
    }

    void run() override {}
    void timerEvent(int id) override { parts.blindTransfer.onTimer(id); }
    void deliverEvent(CSTAEvent*) override {}

    FakeContext context;
    FakeClock clock;
    FakeDirectory phonebook;
    FakeDigits digits;
    FakeDataAccess database;
    ObserverNotifier notifier;
    journal::JournalComponents parts{{notifier, *this, *this, [] {}}};

private:
    struct Step {
        std::string verb;
        std::vector<std::string> words;
        std::map<std::string, std::string> options;
    };
    static Step stepOf(const std::string& text);

    bool happensToCall(const Step& step);
    bool happensToConnection(const Step& step);
    bool happensToSeveralCalls(const Step& step);
    bool happensAround(const Step& step);
    template <typename Event, typename Handler>
    void deliver(Event event, Step step, const Handler& handler);

    std::set<std::string> m_callIds;
};

/// A device as the steps write it.
[[nodiscard]] CSTADevice deviceOf(const std::string& word);
/// The parties of a record in one line, those that are empty left out: "called+remote[4711 Ann] connected[4712]".
[[nodiscard]] std::string partiesText(const journal::Call& call);

}  // namespace journaltest
