#include "host/journal-events/JournalEvent.h"

#include <sys/random.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <stdexcept>

namespace host {
namespace {

bool rings(const PhoneCall& call) {
    return !call.outgoing && !call.offered && !call.elsewhere && call.role == PhoneRole::eRinging;
}

std::string newUid() {
    std::array<unsigned char, 16> bytes{};
    // So few bytes are never cut short; it fails only without the system call.
    if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        throw std::runtime_error("the system gives no random numbers");
    }
    std::string text;
    for (const unsigned char byte : bytes) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02x", byte);
        text += digits.data();
    }
    return text;
}

std::chrono::sys_seconds inSeconds(PhoneCall::Time time) {
    return std::chrono::floor<std::chrono::seconds>(time);
}

}  // namespace

std::string_view wordOf(JournalEventKind kind) noexcept {
    return kJournalEventWords.at(static_cast<std::size_t>(kind));
}

std::optional<JournalEventKind> journalEventOf(std::string_view word) noexcept {
    const auto* const found = std::find(kJournalEventWords.begin(), kJournalEventWords.end(), word);
    return found == kJournalEventWords.end()
               ? std::nullopt
               : std::optional(static_cast<JournalEventKind>(found - kJournalEventWords.begin()));
}

std::optional<JournalEventKind> eventBetween(const PhoneCall* before, const PhoneCall& after) {
    // The conversation of a call that was transferred goes on under another id.
    const bool goesOn = before == nullptr && after.transferred;
    if (isOnlyConference(after) || (goesOn && after.established)) {
        return std::nullopt;
    }
    if (after.established) {
        return before == nullptr || !before->established ? std::optional(JournalEventKind::eCallEstablished)
                                                         : std::nullopt;
    }
    const bool begins = rings(after) && (before == nullptr || !rings(*before));
    return begins ? std::optional(JournalEventKind::eCallRinging) : std::nullopt;
}

LiveCallEvent liveCallEvent(JournalEventKind kind, const PhoneCall& call) {
    const CSTADevice& party = farEndOf(call);
    return {.kind = kind,
            .uid = newUid(),
            .time = inSeconds(std::chrono::system_clock::now()),
            .callId = call.callId,
            .device = call.device == CSTADevice::kLocalDevice ? std::string() : call.device,
            .outgoing = call.outgoing,
            .number = party.number,
            .name = party.name,
            .redirectingNumber = call.redirecting.number,
            .redirectingName = call.redirecting.name,
            .start = inSeconds(call.firstEvent),
            .established = call.established ? std::optional(inSeconds(*call.established)) : std::nullopt};
}

}  // namespace host
