// The link is cut at a random event of each call and comes back after another one, also in the middle of the
// next call with the same id. The journal must hold what the model of the switch says.

#include <string>
#include <vector>

#include "tests/reliability/random-calls/RandomCalls.h"
#include "tests/reliability/support/Rounds.h"

namespace {

constexpr std::size_t kCallsOfRound = 10;

/// A quarter of the rounds for each phone type and dialect.
std::vector<std::string> play(std::uint64_t seed) {
    reliability::RunSettings settings;
    settings.seed = seed;
    settings.phone.sip = seed % 2 == 0;
    settings.dialect.localState = seed / 2 % 2 == 0;
    settings.calls = kCallsOfRound;
    settings.lostLinks = 100;
    settings.single = true;
    std::vector<std::string> faults = reliability::RandomCalls(settings).run();
    for (std::string& fault : faults) {
        for (std::size_t at = fault.find('\n'); at != std::string::npos; at = fault.find('\n', at)) {
            fault.replace(at, 1, " / ");
        }
    }
    return faults;
}

}  // namespace

int main(int argc, char** argv) {
    return reliability::Rounds("link-cut", argc, argv, 16).play(&play);
}
