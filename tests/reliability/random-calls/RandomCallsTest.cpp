// Random calls of three phones and two groups, played from a model of the switch to the real program, whose
// journal must hold what the model says. The environment makes the runs longer; tools/random-calls sets it.

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <string>

#include "tests/reliability/random-calls/RandomCalls.h"

namespace reliability {
namespace {

std::string environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

std::size_t number(const char* name, std::size_t otherwise) {
    const std::string text = environment(name);
    return text.empty() ? otherwise : std::stoul(text);
}

/// The kinds of calls and steps that are left out, by the names in the reports.
Exclusions excluded() {
    std::istringstream names(environment("RANDOM_CALLS_WITHOUT"));
    Exclusions exclusions;
    for (std::string name; std::getline(names, name, ',');) {
        exclusions.insert(name);
    }
    return exclusions;
}

class RandomCallsTest : public ::testing::TestWithParam<std::tuple<bool, bool>> {};

TEST_P(RandomCallsTest, LeaveInTheJournalWhatTheModelSays) {
    const auto [sip, localState] = GetParam();
    RunSettings settings;
    settings.seed = number("RANDOM_CALLS_SEED", 1);
    // A phone type is played in both dialects, each with and without server-based features.
    settings.calls = number("RANDOM_CALLS", 1000) / 4;
    settings.maxDifferences = number("RANDOM_CALLS_DIFFERENCES", 5);
    settings.excluded = excluded();
    settings.dialect.localState = localState;
    settings.phone.sip = sip;
    if (!environment("RANDOM_CALLS_ONLY").empty()) {
        settings.only = number("RANDOM_CALLS_ONLY", 0);
        settings.log = !environment("RANDOM_CALLS_LOG").empty();
    }
    for (const bool forwards : {false, true}) {
        settings.phone.forwards = forwards;
        for (const std::string& difference : RandomCalls(settings).run()) {
            ADD_FAILURE() << difference;
        }
    }
}

std::string nameOf(const ::testing::TestParamInfo<std::tuple<bool, bool>>& info) {
    const auto [sip, localState] = info.param;
    return std::string(sip ? "Sip" : "Qorvex") + (localState ? "WithLocalState" : "WithoutLocalState");
}

INSTANTIATE_TEST_SUITE_P(Phones, RandomCallsTest, ::testing::Combine(::testing::Bool(), ::testing::Bool()),
                         nameOf);

}  // namespace
}  // namespace reliability
