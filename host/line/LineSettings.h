#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "host/csta/CstaLink.h"

namespace host {

/// What one line is made from. A plain value.
struct LineSettings {
    /// The way to the switch; its own device is the line's, and names the line's rows in the database.
    CstaLinkConfig link;
    /// First values of the phone's management keys, and those that win over stored ones.
    std::map<std::string, std::string> managementFirst;
    std::map<std::string, std::string> managementOverrides;
    /// The country whose numbering plan holds, two capital letters.
    std::string region = "DE";
    std::vector<std::string> featureAccessCodes;
    /// Shared devices whose unanswered calls are logged here.
    std::set<std::string> loggedSharedDevices;
};

}  // namespace host
