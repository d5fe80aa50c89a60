#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/database/DatabaseError.h"
#include "host/database/Schema.h"
#include "tests/reliability/database/DatabaseWork.h"
#include "tests/reliability/support/Rounds.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/TemporaryDirectory.h"

// Cuts the power after any change of the disk while the database works, and opens what is left of its files
// with the program's own code: it must hold everything that was reported as done, and of the change under way
// all or nothing.
namespace reliability {
namespace {

constexpr std::uint64_t kCutsOfARun = 64;

/// The database when the change before was done, and the disk then.
struct Point {
    std::size_t changes;
    std::string state;
    std::size_t givenIds;
    bool wasEviction = false;
    /// The state that a start makes of it: a list that is too long is shortened.
    std::string started{};
};

/// One course of changes with its disk.
struct Run {
    std::shared_ptr<SimulatedDisk> disk;
    std::vector<Point> points;
    std::vector<std::string> givenIds;
    std::vector<std::string> faults;
};

class PowerCuts {
public:
    std::vector<std::string> play(std::uint64_t seed);

private:
    [[nodiscard]] Run runOf(std::uint64_t seed) const;
    [[nodiscard]] std::vector<std::string> faultsOf(const Run& run, std::size_t cut, const Files& files,
                                                    Dice& dice) const;

    TemporaryDirectory m_directory;
    const std::filesystem::path m_file = m_directory.path() / "journal.db";
    std::uint64_t m_seed = 0;
    std::optional<Run> m_run;
};

Run PowerCuts::runOf(std::uint64_t seed) const {
    Dice dice(seed);
    // As often as each other: an empty directory, each older version, a full list of this version.
    const int version =
        static_cast<int>(dice.below(static_cast<std::size_t>(host::Schema::version()) + 1)) - 1;
    Run run{std::make_shared<SimulatedDisk>(storedFiles(m_file, version)), {}, {}, {}};
    std::set<std::string> given;
    auto work = std::make_unique<DatabaseWork>(run.disk, m_file);
    static_cast<void>(work->takeModel());
    const auto note = [&] {
        for (const std::string& id : work->givenIds()) {
            if (given.insert(id).second) {
                run.givenIds.push_back(id);
            }
        }
        Point point{run.disk->changes(), work->state(), run.givenIds.size(), work->wasEviction()};
        point.started = DatabaseWork(std::make_shared<SimulatedDisk>(run.disk->files()), m_file).state();
        SimulatedDisk::use(run.disk);
        run.points.push_back(std::move(point));
    };
    note();
    for (int count = 0; count < 24; ++count) {
        if (dice.chance(20)) {
            work->noteLiveCall(dice);
        }
        if (!work->change(dice)) {
            run.faults.emplace_back("a change was refused without a fault");
        }
        note();
        if (dice.chance(4)) {
            work.reset();
            work = std::make_unique<DatabaseWork>(run.disk, m_file);
            static_cast<void>(work->takeModel());
        }
    }
    const std::vector<std::string> unreadable{"the lists cannot be read"};
    const std::vector<std::string> faults = work->faults().value_or(unreadable);
    run.faults.insert(run.faults.end(), faults.begin(), faults.end());
    note();
    return run;
}

std::vector<std::string> PowerCuts::faultsOf(const Run& run, std::size_t cut, const Files& files,
                                             Dice& dice) const {
    const auto next = std::find_if(run.points.begin(), run.points.end(),
                                   [cut](const Point& point) { return point.changes > cut; });
    const auto last = next == run.points.begin() ? next : std::prev(next);
    const std::string where =
        "cut " + std::to_string(cut) + " of " + std::to_string(run.disk->changes()) + ": ";
    std::vector<std::string> found;
    DatabaseWork work(std::make_shared<SimulatedDisk>(files), m_file);
    const std::string state = work.state();
    // An eviction waits for the next change, which loses no information; a request without effect is not
    // written.
    auto first = last;
    while (first != run.points.begin() && (first->wasEviction || first->state == std::prev(first)->state)) {
        --first;
    }
    const auto end = next == run.points.end() ? next : std::next(next);
    if (std::none_of(first, end,
                     [&](const Point& point) { return point.state == state || point.started == state; })) {
        found.push_back(where + "the database has " + state + " instead of " + last->state);
    }
    if (const std::string finding = work.integrity(); finding != "ok") {
        found.push_back(where + finding);
    }
    const std::string id = work.fileCall(dice);
    const auto given = run.givenIds.begin() + static_cast<std::ptrdiff_t>(last->givenIds);
    if (id.empty()) {
        found.push_back(where + "no call can be filed");
    } else if (next != run.points.begin() && std::find(run.givenIds.begin(), given, id) != given) {
        found.push_back(where + "the unique id " + id + " is used again");
    }
    return found;
}

std::vector<std::string> PowerCuts::play(std::uint64_t seed) {
    journaltest::CapturedLog::switchOff();
    const bool isNew = !m_run || m_seed != seed / kCutsOfARun;
    if (isNew) {
        m_seed = seed / kCutsOfARun;
        m_run = runOf(m_seed);
    }
    Dice dice(seed);
    const std::size_t cut = dice.below(m_run->disk->changes() + 1);
    std::vector<std::string> found = isNew ? m_run->faults : std::vector<std::string>();
    try {
        for (std::string& fault : faultsOf(*m_run, cut, m_run->disk->filesAfterCut(cut, dice), dice)) {
            found.push_back(std::move(fault));
        }
    } catch (const host::DatabaseError& error) {
        found.push_back("cut " + std::to_string(cut) + ": " + error.what());
    }
    return found;
}

}  // namespace
}  // namespace reliability

int main(int argc, char** argv) {
    reliability::PowerCuts cuts;
    return reliability::Rounds("power-cut", argc, argv, 500).play([&](std::uint64_t seed) {
        return cuts.play(seed);
    });
}
