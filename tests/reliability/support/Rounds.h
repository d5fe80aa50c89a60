#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace reliability {

/// The rounds of one reliability check, played by its program:
///
///     NAME_check [--rounds N] [--seconds N] [--seed S]
///
/// Round i uses the seed S + i and no other source of chance, so that one round can be played alone by its
/// seed. The program ends at the round or the second that comes first. Each fault is printed as one line with
/// its seed; the last line is
///
///     NAME: R rounds, F faults, next seed T
class Rounds {
public:
    /// Plays the round of a seed and returns its faults, each as one text line; an exception is a fault too.
    using Round = std::function<std::vector<std::string>(std::uint64_t seed)>;

    /// Reads the options; ends the program with status 2 if they are wrong. `rounds` is the number without
    /// `--rounds` and `--seconds`.
    Rounds(std::string name, int argc, const char* const* argv, std::uint64_t rounds);

    /// Plays the rounds on the caller's thread. Returns the status of the program: 1 after a fault, or if no
    /// round was played.
    [[nodiscard]] int play(const Round& round) const;

    [[nodiscard]] std::uint64_t seed() const noexcept { return m_seed; }

private:
    const std::string m_name;
    std::uint64_t m_rounds = 0;
    std::uint64_t m_seconds = 0;
    std::uint64_t m_seed = 1;
};

}  // namespace reliability
