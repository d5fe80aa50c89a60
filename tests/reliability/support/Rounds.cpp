#include "tests/reliability/support/Rounds.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <limits>
#include <utility>

namespace reliability {
namespace {

std::vector<std::string> faultsOf(const Rounds::Round& round, std::uint64_t seed) {
    try {
        return round(seed);
    } catch (const std::exception& error) {
        return {std::string("exception: ") + error.what()};
    }
}

}  // namespace

Rounds::Rounds(std::string name, int argc, const char* const* argv, std::uint64_t rounds)
    : m_name(std::move(name)) {
    CLI::App options(m_name);
    options.add_option("--rounds", m_rounds, "ends after so many rounds");
    options.add_option("--seconds", m_seconds, "ends after so many seconds");
    options.add_option("--seed", m_seed, "the seed of the first round");
    try {
        options.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        std::exit(options.exit(error) == 0 ? 0 : 2);
    }
    if (m_rounds == 0) {
        m_rounds = m_seconds == 0 ? rounds : std::numeric_limits<std::uint64_t>::max();
    }
}

int Rounds::play(const Round& round) const {
    const auto begin = std::chrono::steady_clock::now();
    const auto isDue = [&] {
        return m_seconds != 0 && std::chrono::steady_clock::now() - begin >= std::chrono::seconds(m_seconds);
    };
    std::uint64_t played = 0;
    std::uint64_t faults = 0;
    for (; played < m_rounds && !isDue(); ++played) {
        const std::uint64_t seed = m_seed + played;
        for (const std::string& fault : faultsOf(round, seed)) {
            ++faults;
            std::printf("%s: fault with seed %" PRIu64 ": %s\n", m_name.c_str(), seed, fault.c_str());
            std::fflush(stdout);
        }
    }
    std::printf("%s: %" PRIu64 " rounds, %" PRIu64 " faults, next seed %" PRIu64 "\n", m_name.c_str(), played,
                faults, m_seed + played);
    return faults == 0 && played > 0 ? 0 : 1;
}

}  // namespace reliability
