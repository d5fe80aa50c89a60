#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/reliability/random-calls/PhoneUnderTest.h"
#include "tests/reliability/random-calls/StoryMaker.h"
#include "tests/reliability/random-calls/SwitchPeer.h"

namespace reliability {

/// One run: a phone type at a switch with one dialect.
struct RunSettings {
    PhoneType phone;
    Dialect dialect;
    std::uint64_t seed = 1;
    std::size_t calls = 0;
    /// The calls in which the link is lost, in percent of those in which it may be.
    std::size_t lostLinks = 40;
    /// Plays no two calls at a time.
    bool single = false;
    /// Plays only the call with this number.
    std::optional<std::size_t> only;
    /// Reports its log, too.
    bool log = false;
    Exclusions excluded;
    /// Ends the run after so many differences.
    std::size_t maxDifferences = 10;
};

/// Plays random calls and compares the journal with what each must leave in it. The calls are played in
/// rounds of up to three at a time.
class RandomCalls {
public:
    explicit RandomCalls(RunSettings settings);

    /// The differences, each as a text to read; empty if there are none.
    [[nodiscard]] std::vector<std::string> run();

private:
    /// A phone, connected to a switch.
    struct Session {
        explicit Session(const PhoneType& type);
        SwitchPeer peer;
        PhoneUnderTest phone;
    };
    struct Numbered {
        std::size_t number = 0;
        Story story;
        std::optional<Gap> gap;
    };
    /// Calls that are up at the same time.
    struct Round {
        std::vector<Numbered> stories;
        /// The story of each event.
        std::vector<std::size_t> order;
    };

    [[nodiscard]] Numbered make(std::size_t number, bool alone);
    /// Loses the link in the story, which requires `plain`.
    void addGap(Numbered& made, StorySettings settings, Dice& dice);
    [[nodiscard]] std::string newCallId();
    [[nodiscard]] Round roundOf(std::vector<Numbered> stories);
    /// Plays them, and returns the differences as a text.
    [[nodiscard]] std::string play(const Round& round);
    /// Plays them on a new phone, and returns the differences of the last one.
    [[nodiscard]] std::string playAll(const std::vector<Round>& rounds);
    /// Reports the difference of the last round with as few calls as it takes.
    [[nodiscard]] std::string shortest(const std::string& difference);
    bool send(const Round& round);
    bool loseLink(const Numbered& story);
    bool sendLastCall();
    [[nodiscard]] std::string compare(const std::vector<ExpectedEntry>& expected);
    [[nodiscard]] std::string report(const std::vector<Round>& rounds, const std::string& difference);

    const RunSettings m_settings;
    const Office m_office;
    std::unique_ptr<Session> m_session;
    Dice m_dice;
    std::set<std::string> m_idsInUse;
    std::vector<std::string> m_lastIds;
    std::size_t m_lastId = 0;
    std::deque<Round> m_history;
    std::size_t m_lastCalls = 0;
    std::string m_lastNumber;
};

}  // namespace reliability
