#include "tests/reliability/random-calls/RandomCalls.h"

#include <algorithm>
#include <chrono>
#include <sstream>
#include <thread>
#include <utility>

#include "tests/support/CapturedLog.h"

namespace reliability {

namespace {

/// The longest time for which the journal waits before it files a call that has ended.
constexpr std::chrono::milliseconds kHeldBack{1200};
/// The call ids of a switch that uses them again soon.
constexpr std::size_t kCallIds = 60;
/// The rounds among which the cause of a difference is looked for.
constexpr std::size_t kHistory = 60;

/// Phones with server-based features get other calls.
std::uint64_t seedOf(const RunSettings& settings) {
    return settings.seed * 2 + (settings.phone.forwards ? 1 : 0);
}

Office officeOf(std::uint64_t seed) {
    Dice dice(seed);
    return Office::random(dice);
}

/// The ids of the calls that the snapshot shows.
std::vector<std::string> callIdsAfter(const Story& story, const Gap& gap) {
    std::vector<std::string> ids;
    for (const Call& call : story.steps[gap.end - 1].calls) {
        ids.push_back(call.id);
    }
    return ids;
}

std::string joined(const Entries& entries) {
    std::string text;
    for (const std::string& entry : entries) {
        text += (text.empty() ? "" : ", ") + entry;
    }
    return text.empty() ? "(no entry)" : text;
}

}  // namespace

RandomCalls::Session::Session(const PhoneType& type) : phone(type, peer.port()) {
    // The first snapshot shows an offered call as one that rings.
    if (!peer.connect() || !peer.awaitSnapshot({})) {
        throw std::runtime_error("the phone does not start its monitor");
    }
}

RandomCalls::RandomCalls(RunSettings settings)
    : m_settings(std::move(settings)), m_office(officeOf(seedOf(m_settings))), m_dice(seedOf(m_settings)) {}

std::vector<std::string> RandomCalls::run() {
    m_session = std::make_unique<Session>(m_settings.phone);
    if (m_settings.only) {
        const Round round = roundOf({make(*m_settings.only, true)});
        const std::string difference = play(round);
        return {report({round}, difference) + (m_settings.log ? journaltest::CapturedLog::dump() : "")};
    }
    std::vector<std::string> differences;
    for (std::size_t number = 0;
         number < m_settings.calls && differences.size() < m_settings.maxDifferences;) {
        const std::size_t count =
            m_settings.single ? 1 : std::min(m_settings.calls - number, 1 + m_dice.below(3));
        std::vector<Numbered> stories;
        for (std::size_t each = 0; each < count; ++each, ++number) {
            stories.push_back(make(number, count == 1));
        }
        m_lastIds.assign(m_idsInUse.begin(), m_idsInUse.end());
        m_idsInUse.clear();
        m_history.push_back(roundOf(std::move(stories)));
        if (const std::string difference = play(m_history.back()); !difference.empty()) {
            differences.push_back(shortest(difference));
            m_history.clear();
            m_session = std::make_unique<Session>(m_settings.phone);
        } else if (m_history.size() > kHistory) {
            m_history.pop_front();
        }
    }
    return differences;
}

std::string RandomCalls::shortest(const std::string& difference) {
    for (const Numbered& story : m_history.back().stories) {
        const Round alone = roundOf({story});
        if (const std::string found = playAll({alone}); !found.empty()) {
            return report({alone}, found);
        }
    }
    std::vector<Round> rounds(m_history.begin(), m_history.end());
    if (playAll(rounds).empty()) {
        return report({rounds.back()}, difference + "    No difference if it is played again.\n");
    }
    // Without halves, quarters, ... of the rounds before.
    for (std::size_t size = rounds.size() / 2; size > 0; size /= 2) {
        for (std::size_t first = 0; first + size < rounds.size();) {
            std::vector<Round> fewer = rounds;
            const auto begin = fewer.begin() + static_cast<std::ptrdiff_t>(first);
            fewer.erase(begin, begin + static_cast<std::ptrdiff_t>(size));
            if (playAll(fewer).empty()) {
                first += size;
            } else {
                rounds = std::move(fewer);
            }
        }
    }
    return report(rounds, difference);
}

std::string RandomCalls::playAll(const std::vector<Round>& rounds) {
    m_session = std::make_unique<Session>(m_settings.phone);
    for (std::size_t each = 0; each + 1 < rounds.size(); ++each) {
        if (!send(rounds[each]) || !sendLastCall()) {
            return "    the phone has stopped\n";
        }
        m_session->phone.clear();
    }
    return play(rounds.back());
}

RandomCalls::Round RandomCalls::roundOf(std::vector<Numbered> stories) {
    Round round{std::move(stories), {}};
    std::vector<std::size_t> next(round.stories.size(), 0);
    std::vector<std::size_t> left;
    for (std::size_t each = 0; each < round.stories.size(); ++each) {
        if (!round.stories[each].story.steps.empty()) {
            left.push_back(each);
        }
    }
    while (!left.empty()) {
        const std::size_t chosen = m_dice.pick(left);
        const std::vector<Step>& steps = round.stories[chosen].story.steps;
        do {
            round.order.push_back(chosen);
        } while (steps[next[chosen]++].joined);
        if (next[chosen] == steps.size()) {
            left.erase(std::find(left.begin(), left.end(), chosen));
        }
    }
    return round;
}

RandomCalls::Numbered RandomCalls::make(std::size_t number, bool alone) {
    StorySettings settings;
    settings.seed = Dice(seedOf(m_settings) * 1000003 + number).seed();
    settings.outsidePrefix = "47" + std::to_string(100000 + number);
    // One call of a round at most.
    settings.inside = number % 3 == 0;
    settings.localState = m_settings.dialect.localState;
    settings.newCallId = [this] { return newCallId(); };
    settings.excluded = m_settings.excluded;
    Numbered made{number, StoryMaker(m_office, settings).make(), {}};
    Dice dice(settings.seed + 1);
    if (alone && made.story.plain && dice.chance(m_settings.lostLinks) &&
        !m_settings.excluded.contains("lost-link")) {
        addGap(made, std::move(settings), dice);
    }
    return made;
}

void RandomCalls::addGap(Numbered& made, StorySettings settings, Dice& dice) {
    const std::size_t steps = made.story.steps.size();
    if (steps == 0) {
        return;
    }
    const std::size_t first = dice.below(steps);
    made.gap = Gap{first, first + 1 + dice.below(steps - first)};
    // Or the gap reaches into another call that has the same id.
    std::string callId = made.story.legs.front().callId;
    settings.seed += 2;
    settings.outsidePrefix += "5";
    settings.inside = false;
    settings.newCallId = [callId = std::move(callId)] { return callId; };
    const Story next = StoryMaker(m_office, settings).make();
    if (dice.chance(40) && next.plain && !next.steps.empty() && made.story.legs.size() == 1) {
        made.story.append(next);
        made.gap->end = steps + 1 + dice.below(next.steps.size());
    }
}

std::string RandomCalls::newCallId() {
    std::string id;
    do {
        const bool again = !m_lastIds.empty() && m_dice.chance(30);
        id = again ? m_dice.pick(m_lastIds) : std::to_string(1 + m_lastId++ % kCallIds);
    } while (!m_idsInUse.insert(id).second);
    return id;
}

std::string RandomCalls::play(const Round& round) {
    journaltest::CapturedLog::reset();
    std::vector<ExpectedEntry> expected;
    for (const Numbered& each : round.stories) {
        const auto entries = expectedEntries(each.story, m_settings.phone, m_settings.dialect, each.gap);
        expected.insert(expected.end(), entries.begin(), entries.end());
    }
    return send(round) && sendLastCall() ? compare(expected) : "    the phone has stopped\n";
}

bool RandomCalls::send(const Round& round) {
    std::vector<std::size_t> next(round.stories.size(), 0);
    for (const std::size_t chosen : round.order) {
        const Numbered& story = round.stories[chosen];
        const std::size_t step = next[chosen]++;
        const bool lost = story.gap && step >= story.gap->first && step < story.gap->end;
        if (!lost) {
            // A call with a gap is alone.
            m_session->peer.send(story.story.steps[step].event, m_settings.dialect,
                                 story.gap ? story.story.steps[step].calls : std::vector<Call>());
        } else if (step == story.gap->first && !loseLink(story)) {
            return false;
        }
    }
    return true;
}

/// The events of the gap do not reach the phone. It connects again when they are over.
bool RandomCalls::loseLink(const Numbered& story) {
    // Everything before must have arrived; the end of the connection may overtake it.
    if (!m_session->peer.awaitIdle()) {
        return false;
    }
    m_session->peer.disconnect();
    m_session->peer.setCalls(story.story.steps[story.gap->end - 1].calls, m_settings.dialect);
    return m_session->peer.connect() && m_session->peer.awaitSnapshot(callIdsAfter(story.story, *story.gap));
}

bool RandomCalls::sendLastCall() {
    m_lastNumber = "9" + std::to_string(1000000 + m_lastCalls++);
    CallEvent event;
    event.kind = EventKind::eDelivered;
    event.callId = "last";
    event.subject = event.device = event.called = SwitchModel::own();
    event.calling = {m_lastNumber, {}};
    event.local = "alerting";
    event.cause = "newCall";
    m_session->peer.send(event, m_settings.dialect);
    event.kind = EventKind::eConnectionCleared;
    event.local = "null";
    event.cause = "normalClearing";
    m_session->peer.send(event, m_settings.dialect);
    return m_session->phone.awaitMissed(m_lastNumber);
}

std::string RandomCalls::compare(const std::vector<ExpectedEntry>& expected) {
    Entries found = m_session->phone.entriesWithout(m_lastNumber);
    if (!matches(expected, found)) {
        std::this_thread::sleep_for(kHeldBack);
        found = m_session->phone.entriesWithout(m_lastNumber);
    }
    m_session->phone.clear();
    if (matches(expected, found)) {
        return {};
    }
    Entries texts;
    for (const ExpectedEntry& one : expected) {
        texts.insert(one.front());
    }
    return "    expected " + joined(texts) + "\n    found    " + joined(found) + "\n";
}

std::string RandomCalls::report(const std::vector<Round>& rounds, const std::string& difference) {
    std::ostringstream text;
    text << m_settings.phone.text() << (m_settings.dialect.localState ? ", with" : ", without")
         << " localConnectionInfo, seed " << m_settings.seed << '\n';
    for (const Round& round : rounds) {
        for (const Numbered& each : round.stories) {
            text << "  call " << each.number << ":";
            for (const std::string& choice : each.story.choices) {
                text << ' ' << choice;
            }
            text << '\n';
        }
        std::vector<std::size_t> next(round.stories.size(), 0);
        for (const std::size_t chosen : round.order) {
            const Numbered& story = round.stories[chosen];
            const std::size_t step = next[chosen]++;
            const bool lost = story.gap && step >= story.gap->first && step < story.gap->end;
            text << (lost ? "  lost  " : "    ") << describe(story.story.steps[step].event) << '\n';
        }
    }
    text << (difference.empty() ? "    no difference\n" : difference);
    return text.str();
}

}  // namespace reliability
