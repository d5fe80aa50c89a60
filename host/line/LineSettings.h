#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "host/csta/CstaLink.h"
#include "host/digits/Dialling.h"

namespace host {

class EventQueue;
class Phonebook;
class SwitchLink;

/// The settings from which one line is built. A plain value.
struct LineSettings {
    /// The link to the switch. Its own device is the device of the line, which is also the key of its
    /// database rows.
    CstaLinkConfig link;
    /// The link that lines of one switch share; borrowed, outlives the line. Null: the line has its own.
    SwitchLink* sharedLink = nullptr;
    /// First values of the phone's management keys, and values that override stored ones.
    std::map<std::string, std::string> managementFirst;
    std::map<std::string, std::string> managementOverrides;
    /// The country of the numbering plan, as two capital letters.
    std::string region = "DE";
    std::vector<std::string> featureAccessCodes;
    /// See `Dialling::Rules`.
    std::string outsideLine;
    DialForm dialForm = DialForm::eNational;
    /// The numbers whose calls are not kept (`NumberPatterns`).
    std::vector<std::string> neverLog{};
    /// Shared devices whose unanswered calls are logged on this line.
    std::set<std::string> loggedSharedDevices;
    /// The journal loads its lists when an operation first needs them, and `Line::unloadLists` frees their
    /// memory.
    bool loadsListsAtFirstNeed = false;
    /// The contacts of all lines; borrowed, outlives the line. Null: the line has its own ones only.
    Phonebook* sharedContacts = nullptr;
    /// Gets the events of the line for webhooks; borrowed, outlives the line. Null without a webhook.
    const EventQueue* events = nullptr;
};

}  // namespace host
