// Messages of a switch that are wrong, hostile or torn. After those of each round the journal must file the
// next call, and a frame must be read alike wherever it is split.
//
// The rounds of `kRoundsOfSession` seeds share a session, for what a message changes may show later. The
// program plays the session of its first seed from its begin, so that a round can be played alone.

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/csta-wire/Frame.h"
#include "host/csta-wire/FrameReader.h"
#include "host/csta-wire/WireDocument.h"
#include "tests/reliability/random-calls/PhoneUnderTest.h"
#include "tests/reliability/random-calls/SwitchPeer.h"
#include "tests/reliability/support/Dice.h"
#include "tests/reliability/support/Rounds.h"
#include "tests/reliability/wire/Mutations.h"
#include "tests/support/CapturedLog.h"

namespace reliability {
namespace {

constexpr std::size_t kMessagesOfRound = 20;
constexpr std::uint64_t kRoundsOfSession = 100;
constexpr std::size_t kSplitRounds = 100;
/// A call is filed at once, unless the messages before it have made the link ask for something.
constexpr std::chrono::seconds kPatience{10};
constexpr std::chrono::milliseconds kRepetition{300};

class Wire {
public:
    std::vector<std::string> play(std::uint64_t seed) {
        const std::uint64_t begin = seed - seed % kRoundsOfSession;
        if (!std::exchange(m_isBegun, true) && begin < seed) {
            std::printf("wire: plays the session of the round from seed %" PRIu64 "\n", begin);
            for (std::uint64_t each = begin; each < seed; ++each) {
                static_cast<void>(playRound(each));
            }
        }
        return playRound(seed);
    }

private:
    std::vector<std::string> playRound(std::uint64_t seed) {
        journaltest::CapturedLog::reset();
        renewSession(seed);
        Dice dice(seed);
        std::vector<std::string> faults = playSplits(seed);
        const std::string number = "9" + std::to_string(1000000 + seed % 1000000);
        const int monitorStarts = m_session->peer.monitorStarts();
        const bool disturbs = dice.chance(10);
        if (disturbs) {
            const SampleMessage message = dice.pick(disturbingMessages(m_session->peer.crossRefId()));
            m_session->peer.sendBytes(host::encodeFrame(message.invokeId, message.xml).value());
        }
        std::string reason;
        const std::string& refused = refusedTexts()[seed % refusedTexts().size()];
        if (host::WireDocument::parse(refused, reason)) {
            faults.push_back("not refused: " + refused.substr(0, 60));
        }
        send(bytesOf(dice), dice);
        if (!(disturbs ? isFiledInTheEnd(number) : isFiled(number, monitorStarts))) {
            faults.push_back("the next call is not filed");
            m_session.reset();
        }
        return faults;
    }

    struct Session {
        SwitchPeer peer;
        PhoneUnderTest phone{PhoneType{}, peer.port()};
    };

    void renewSession(std::uint64_t seed) {
        if (m_session == nullptr || seed % kRoundsOfSession == 0 || !m_session->peer.isOpen()) {
            m_session = std::make_unique<Session>();
            if (!m_session->peer.connect()) {
                throw std::runtime_error("the phone does not start its monitor");
            }
        }
    }

    /// Splits each kind of message at some positions, with a long pause there. `kSplitRounds` rounds in a row
    /// cover all positions.
    [[nodiscard]] std::vector<std::string> playSplits(std::uint64_t seed) const {
        std::vector<std::string> faults;
        for (const SampleMessage& sample : sampleMessages("m1")) {
            const std::string bytes = host::encodeFrame(sample.invokeId, sample.xml).value();
            for (std::size_t split = seed % kSplitRounds; split < bytes.size(); split += kSplitRounds) {
                if (!isReadAlike(bytes, split, sample)) {
                    faults.push_back("another frame when split at byte " + std::to_string(split) + ": " +
                                     sample.xml);
                }
            }
        }
        return faults;
    }

    [[nodiscard]] static bool isReadAlike(std::string_view bytes, std::size_t split,
                                          const SampleMessage& sample) {
        host::FrameReader reader;
        reader.feed(bytes.substr(0, split));
        const bool early = reader.next() || reader.takeOverdue();
        reader.feed(bytes.substr(split));
        const auto frame = reader.next();
        return !early && frame && frame->xml == sample.xml && frame->invokeId == sample.invokeId &&
               reader.takeFaults().empty();
    }

    [[nodiscard]] std::string bytesOf(Dice& dice) const {
        const std::vector<SampleMessage> samples = sampleMessages(m_session->peer.crossRefId());
        std::string bytes;
        for (std::size_t each = 0; each < kMessagesOfRound; ++each) {
            bytes += mutatedFrame(samples, dice);
        }
        return bytes;
    }

    /// In segments of any length.
    void send(std::string_view bytes, Dice& dice) {
        while (!bytes.empty()) {
            const std::size_t length = dice.chance(50) ? bytes.size() : 1 + dice.below(bytes.size());
            m_session->peer.sendBytes(bytes.substr(0, length));
            bytes.remove_prefix(length);
        }
    }

    void sendCall(const std::string& number) {
        CallEvent event;
        event.kind = EventKind::eDelivered;
        event.callId = "call-" + number;
        event.subject = event.device = event.called = SwitchModel::own();
        event.calling = {number, {}};
        event.local = "alerting";
        event.cause = "newCall";
        m_session->peer.send(event, {});
        event.kind = EventKind::eConnectionCleared;
        event.local = "null";
        event.cause = "normalClearing";
        m_session->peer.send(event, {});
    }

    /// At once, unless the link has started its monitor again on the same connection: a mutated message may
    /// be the status, or the response, that makes it do so. A call in this gap is unknown to the journal.
    [[nodiscard]] bool isFiled(const std::string& number, int monitorStarts) {
        sendCall(number);
        if (m_session->phone.awaitMissed(number, kRepetition)) {
            return true;
        }
        const SwitchPeer& peer = m_session->peer;
        return peer.isOpen() && peer.monitorStarts() != monitorStarts
                   ? isFiledInTheEnd(number)
                   : m_session->phone.awaitMissed(number, kPatience);
    }

    /// The link connects again, or starts its monitor again.
    [[nodiscard]] bool isFiledInTheEnd(const std::string& number) {
        const auto end = std::chrono::steady_clock::now() + kPatience;
        while (std::chrono::steady_clock::now() < end) {
            if (!m_session->peer.isOpen()) {
                m_session->peer.disconnect();
                if (!m_session->peer.connect()) {
                    return false;
                }
            }
            sendCall(number);
            if (m_session->phone.awaitMissed(number, kRepetition)) {
                return true;
            }
        }
        return false;
    }

    std::unique_ptr<Session> m_session;
    bool m_isBegun = false;
};

}  // namespace
}  // namespace reliability

int main(int argc, char** argv) {
    const reliability::Rounds rounds("wire", argc, argv, 300);
    reliability::Wire wire;
    return rounds.play([&wire](std::uint64_t seed) { return wire.play(seed); });
}
