#include "host/sip/CallEnd.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace host {

namespace {

struct StatusRow {
    int first;
    int last;
    std::string_view cause;
};

// Status codes of SIP. The first row that fits applies.
constexpr std::array kStatuses = {
    StatusRow{404, 404, "destNotObtainable"},
    StatusRow{410, 410, "destNotObtainable"},
    StatusRow{484, 485, "destNotObtainable"},
    StatusRow{604, 604, "destNotObtainable"},
    StatusRow{408, 408, "callNotAnswered"},
    StatusRow{480, 480, "callNotAnswered"},
    StatusRow{487, 487, "callNotAnswered"},
    StatusRow{486, 486, "busy"},
    StatusRow{600, 600, "busy"},
    StatusRow{603, 603, "callCancelled"},
    StatusRow{607, 608, "callCancelled"},
    StatusRow{500, 599, "networkCongestion"},
    StatusRow{300, 699, "callCancelled"},
};

/// Baresip rejects a call with "486 Rejected".
constexpr std::string_view kRejected = "Rejected";

}  // namespace

CallEnd readCallEnd(std::string_view text) {
    if (text == "Connection reset by user") {
        return {.by = CallEnd::By::eUser};
    }
    int status = 0;
    std::from_chars(text.data(), text.data() + text.size(), status);
    if (status == 0) {
        const bool timedOut = text.find("timed out") != std::string_view::npos ||
                              text.find("timeout") != std::string_view::npos;
        if (text.empty() || text == "Connection reset by peer") {
            return {.by = CallEnd::By::ePeer};
        }
        // No response (408 in a proxy), or the error of a socket, or of the look-up of a name.
        return {.by = CallEnd::By::eFailure, .cause = timedOut ? "callNotAnswered" : "networkCongestion"};
    }
    const auto* const row = std::find_if(kStatuses.begin(), kStatuses.end(), [status](const StatusRow& each) {
        return status >= each.first && status <= each.last;
    });
    const bool rejected = text.find(kRejected) != std::string_view::npos;
    return {.by = CallEnd::By::eFailure,
            .cause = std::string(rejected                 ? "callCancelled"
                                 : row == kStatuses.end() ? "normalClearing"
                                                          : row->cause)};
}

}  // namespace host
