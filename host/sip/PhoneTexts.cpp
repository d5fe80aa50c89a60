#include "host/sip/PhoneTexts.h"

#include <algorithm>
#include <charconv>

#include "host/csta-wire/XmlText.h"

namespace host {

namespace {

/// Removes the next text line from `text` and returns it.
std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

/// The text between `begin` and `end`, or up to the end of the line; empty if `begin` is not in it.
std::string_view between(std::string_view line, std::string_view begin, char end) {
    const std::size_t found = line.find(begin);
    if (found == std::string_view::npos) {
        return {};
    }
    line.remove_prefix(found + begin.size());
    return line.substr(0, line.find(end));
}

/// "Ann <sip:ann@example.org>"
void readPeer(std::string_view text, SipCallState& call) {
    const std::size_t bracket = text.rfind('<');
    if (bracket != std::string_view::npos) {
        call.peerName = trimmed(text.substr(0, bracket));
        call.peerUri = text.substr(bracket + 1, text.rfind('>') - bracket - 1);
    }
}

SipCallState::State stateOf(std::string_view word, bool outgoing) {
    if (word == "ESTABLISHED") {
        return SipCallState::State::eTalking;
    }
    const bool ringing = !outgoing || word == "RINGING" || word == "EARLY";
    return ringing ? SipCallState::State::eRinging : SipCallState::State::eDialling;
}

}  // namespace

std::vector<int> readLineNumbers(std::string_view text) {
    std::vector<int> numbers;
    while (!text.empty()) {
        const std::string_view digits = between(takeLine(text), "[line ", ']');
        int number = 0;
        if (std::from_chars(digits.data(), digits.data() + digits.size(), number).ec == std::errc()) {
            numbers.push_back(number);
        }
    }
    return numbers;
}

std::optional<bool> readRegistration(std::string_view text, std::string_view address) {
    // The telephone shows the address as it was written, without the parameters.
    const std::string account = ' ' + std::string(address.substr(0, address.find(';'))) + ' ';
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        const std::size_t found = line.find(account);
        if (found != std::string_view::npos) {
            // After the address: terminal codes around "OK ", "ERR" or "zzz".
            const std::string_view state = line.substr(found + account.size());
            const bool registered = state.find("OK") != std::string_view::npos;
            const bool refused = state.find("ERR") != std::string_view::npos;
            return registered || refused ? std::optional(registered) : std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<std::string> readRegistrationFault(std::string_view line, std::string_view address) {
    // "reg: sip:ann@example.org: 403 Forbidden (registrar's words)"
    const std::string begin = "reg: " + std::string(address.substr(0, address.find(';'))) + ": ";
    if (line.substr(0, begin.size()) != begin) {
        return std::nullopt;
    }
    line.remove_prefix(begin.size());
    return std::string(trimmed(line.substr(0, line.find(" ("))));
}

std::optional<SipCallState> readCallState(std::string_view text) {
    constexpr std::string_view kPeer = " peer_uri:";
    SipCallState call;
    std::string_view word;
    // A name cannot begin a line, so no peer can pretend the members of another line.
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (line.substr(0, 5) == "=====") {
            word = between(line, "Call debug (", ')');
        } else if (line.substr(0, kPeer.size()) == kPeer) {
            readPeer(trimmed(line.substr(kPeer.size())), call);
        } else if (line.substr(0, 4) == " af=" && call.id.empty()) {
            call.id = between(line, " id=", ' ');
        } else if (line.substr(0, 12) == " direction: ") {
            call.outgoing = between(line, " direction: ", ' ') == "Outgoing";
        }
    }
    if (call.id.empty() || word == "TERMINATED") {
        return std::nullopt;
    }
    call.state = stateOf(word, call.outgoing);
    return call;
}

}  // namespace host
