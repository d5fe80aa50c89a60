#include "tests/reliability/wire/Mutations.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "host/csta-wire/Frame.h"

namespace reliability {

namespace {

std::string randomBytes(Dice& dice, std::size_t most) {
    std::string bytes;
    for (std::size_t left = dice.below(most + 1); left > 0; --left) {
        bytes.push_back(static_cast<char>(dice.below(256)));
    }
    return bytes;
}

/// A range of the text: where it begins and how long it is.
struct Range {
    Range(const std::string& text, Dice& dice)
        : begin(dice.below(text.size() + 1)),
          length(dice.below(std::min<std::size_t>(text.size() - begin, 40) + 1)) {}

    std::size_t begin;
    std::size_t length;
};

void damage(std::string& text, Dice& dice) {
    const Range range(text, dice);
    switch (dice.below(5)) {
        case 0: text.replace(range.begin, range.length, randomBytes(dice, 8)); break;
        case 1: text.erase(range.begin, range.length); break;
        case 2: text.insert(range.begin, text.substr(range.begin, range.length)); break;
        case 3: text.resize(range.begin); break;
        default: text.insert(range.begin, randomBytes(dice, 8)); break;
    }
}

void splice(std::string& text, const std::string& other, Dice& dice) {
    const Range to(text, dice);
    const Range from(other, dice);
    text.replace(to.begin, to.length, other.substr(from.begin));
}

void claimOtherLength(std::string& frame, Dice& dice) {
    const std::size_t real = frame.size();
    std::size_t length = real;
    switch (dice.below(5)) {
        case 0: length = real - std::min(real, 1 + dice.below(40)); break;
        case 1: length = real + 1 + dice.below(20); break;
        case 2: length = real + dice.below(5000); break;
        case 3: length = dice.below(65536); break;
        default: length = 65535; break;
    }
    frame[2] = static_cast<char>(static_cast<unsigned char>(length / 256 % 256));
    frame[3] = static_cast<char>(static_cast<unsigned char>(length % 256));
}

void damageFrame(std::string& frame, Dice& dice) {
    switch (dice.below(6)) {
        case 0:
        case 1: claimOtherLength(frame, dice); break;
        case 2: frame[4 + dice.below(4)] = static_cast<char>(dice.below(256)); break;
        case 3: frame.resize(1 + dice.below(frame.size())); break;
        case 4: frame.insert(0, randomBytes(dice, 40)); break;
        default: damage(frame, dice); break;
    }
}

}  // namespace

std::string mutatedFrame(const std::vector<SampleMessage>& samples, Dice& dice) {
    SampleMessage message = dice.pick(samples);
    const std::size_t kind = dice.below(10);
    if (kind == 0) {
        message.xml = dice.pick(dice.chance(50) ? hostileTexts() : refusedTexts());
    }
    // The kinds up to 3 get no other damage.
    const std::size_t fewest = kind > 0 && kind < 4 ? 1 : 0;
    for (std::size_t times = kind < 6 ? fewest + dice.below(3 - fewest) : 0; times > 0; --times) {
        if (dice.chance(20)) {
            splice(message.xml, dice.pick(samples).xml, dice);
        } else {
            damage(message.xml, dice);
        }
    }
    if (dice.chance(10)) {
        message.invokeId = static_cast<int>(dice.below(10000));
    }
    message.xml.resize(std::min(message.xml.size(), host::Frame::kMaxXmlBytes));
    std::string frame = host::encodeFrame(message.invokeId, message.xml).value();
    if (kind > 3) {
        damageFrame(frame, dice);
    }
    return frame;
}

}  // namespace reliability
