#pragma once

#include <string>

/// One entry of the call log that the switch keeps, as it reports it. A plain value, copied whole. The
/// enumerations are open: a switch may send other values.
struct CallLogEntryEvent {
    // NOLINTNEXTLINE(bugprone-reserved-identifier): the platform's name.
    enum _LogTarget : int {
        eReceived = 0,
        eMissed = 1,
        eMissedMarked = 2,
        eMissedGroupRequest = 3,
        eDialled = 4,
        eDialledForwarded = 5,
        eDialledUnanswered = 6,
        eMissedGroup = 7,
    };
    // NOLINTNEXTLINE(bugprone-reserved-identifier): the platform's name.
    enum _PresentationValue : int { eNotPresented = 0, ePresented = 1 };
    // NOLINTNEXTLINE(bugprone-reserved-identifier): the platform's name.
    enum _TFormat : int { eTimeIso8601 = 0, eTimeLocal = 1 };

    /// The action on the entry. Of the texts below C and D are the redirecting number and name, F a group's
    /// text (docs/messages.md, "The switch's call log"). A presentation value is the restriction of the text
    /// after it.
    enum Action : int { eAdd = 0, eDelete = 1, eDeleteAll = 2 };

    int action = eAdd;
    _LogTarget logTarget = eReceived;
    _PresentationValue presentationA = eNotPresented;
    std::string subscriberNumber;
    _PresentationValue presentationB = eNotPresented;
    std::string name;
    _PresentationValue presentationC = eNotPresented;
    std::string textC;
    _PresentationValue presentationD = eNotPresented;
    std::string textD;
    int valueE = 0;
    std::string textE;
    int valueF = 0;
    std::string textF;
    _TFormat entryTimeFormat = eTimeIso8601;
    std::string entryTime;
    /// Two more texts of the switch, which the journal does not use.
    std::string furtherTextA;
    std::string furtherTextB;
};
