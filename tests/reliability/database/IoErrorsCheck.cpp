#include <sqlite3.h>

#include <array>
#include <cstdint>
#include <map>
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

// Fails one operation of the disk, or all of its kind for some time, while the database is opened, migrated
// and changed. All that was reported as done must be there afterwards, and nothing that was refused; the log
// and the health report the refusal, and the database works again when the fault ends.
namespace reliability {
namespace {

using Operation = SimulatedDisk::Operation;

struct Kind {
    const char* name;
    Operation operation;
    int error;
};

constexpr std::array<Kind, 11> kKinds{{{"open: cannot open", Operation::eOpen, SQLITE_CANTOPEN},
                                       {"read: I/O error", Operation::eRead, SQLITE_IOERR_READ},
                                       {"write: I/O error", Operation::eWrite, SQLITE_IOERR_WRITE},
                                       {"write: disk full", Operation::eWrite, SQLITE_FULL},
                                       {"truncate: I/O error", Operation::eTruncate, SQLITE_IOERR_TRUNCATE},
                                       {"sync: I/O error", Operation::eSync, SQLITE_IOERR_FSYNC},
                                       {"lock: I/O error", Operation::eLock, SQLITE_IOERR_LOCK},
                                       {"lock: busy", Operation::eLock, SQLITE_BUSY},
                                       {"shared memory: I/O error", Operation::eShared, SQLITE_IOERR_SHMMAP},
                                       {"delete: I/O error", Operation::eDelete, SQLITE_IOERR_DELETE},
                                       {"sync: disk full", Operation::eSync, SQLITE_FULL}}};
constexpr std::uint64_t kCourses = 8;
constexpr int kChanges = 12;
/// The changes after which a fault that lasts has ended.
constexpr int kLasts = 4;

/// The fault of one round.
struct Fault {
    const Kind& kind;
    std::size_t step;
    bool lasts;
};

/// Fails the operations of a kind from the `step`th on. One thread uses it.
class FailingOperations {
public:
    explicit FailingOperations(const Fault& fault) : m_fault(fault) {}

    int operator()(Operation operation) {
        if (operation != m_fault.kind.operation || m_isOver) {
            return 0;
        }
        const bool fails = m_fault.lasts ? m_count >= m_fault.step : m_count == m_fault.step;
        ++m_count;
        m_failed = m_failed || fails;
        return fails ? m_fault.kind.error : 0;
    }
    /// The operations of the kind so far.
    [[nodiscard]] std::size_t count() const noexcept { return m_count; }
    [[nodiscard]] bool failed() const noexcept { return m_failed; }
    void end() noexcept { m_isOver = true; }

private:
    const Fault m_fault;
    std::size_t m_count = 0;
    bool m_failed = false;
    bool m_isOver = false;
};

class Course {
public:
    Course(const std::filesystem::path& file, std::uint64_t number, const Fault& fault)
        : m_file(file),
          m_dice(number),
          m_disk(std::make_shared<SimulatedDisk>(
              storedFiles(file, static_cast<int>(number) % host::Schema::version()))),
          m_operations(fault) {
        m_disk->setFaults(
            [this](Operation operation, const std::string&, std::size_t) { return m_operations(operation); });
    }

    std::vector<std::string> play();
    [[nodiscard]] std::size_t operations() const noexcept { return m_operations.count(); }

private:
    [[nodiscard]] bool opens();
    void change();
    void checkAfterwards();

    const std::filesystem::path m_file;
    Dice m_dice;
    const std::shared_ptr<SimulatedDisk> m_disk;
    FailingOperations m_operations;
    std::unique_ptr<DatabaseWork> m_work;
    std::vector<std::string> m_found;
};

/// Opens the database, a second time after a fault.
bool Course::opens() {
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            m_work = std::make_unique<DatabaseWork>(m_disk, m_file);
            return true;
        } catch (const host::DatabaseError& error) {
            if (!m_operations.failed() || attempt == 1) {
                m_found.push_back(std::string("the database cannot be opened: ") + error.what());
            }
            m_operations.end();
        }
    }
    return false;
}

void Course::change() {
    int left = kLasts;
    for (int count = 0; count < kChanges; ++count) {
        const bool isDone = m_work->change(m_dice);
        if (!isDone && !m_operations.failed()) {
            m_found.emplace_back("a change was refused without a fault");
        }
        if (!isDone && m_work->database().healthy()) {
            m_found.emplace_back("a change was refused, and the database reports itself as healthy");
        }
        if (!isDone && journaltest::CapturedLog::lines("Database").empty()) {
            m_found.emplace_back("a change was refused without a line in the log");
        }
        if (m_work->database().healthy()) {
            const auto faults = m_work->faults();
            m_found.insert(m_found.end(), faults ? faults->begin() : m_found.end(),
                           faults ? faults->end() : m_found.end());
        }
        if (m_operations.failed() && --left == 0) {
            m_operations.end();
        }
    }
}

void Course::checkAfterwards() {
    m_operations.end();
    if (!m_work->database().probe() || !m_work->database().healthy()) {
        m_found.emplace_back("the database is not healthy after the fault has ended");
    }
    if (!m_work->change(m_dice)) {
        m_found.emplace_back("a change is refused after the fault has ended");
    }
    const std::vector<std::string> unreadable{"the lists cannot be read after the fault has ended"};
    for (const std::string& fault : m_work->faults().value_or(unreadable)) {
        m_found.push_back(fault);
    }
    const std::string state = m_work->state();
    m_work.reset();
    m_work = std::make_unique<DatabaseWork>(m_disk, m_file);
    if (const std::string now = m_work->state(); now != state) {
        m_found.push_back("the database had " + state + ", and has " + now + " when it is opened again");
    }
    if (const std::string finding = m_work->integrity(); finding != "ok") {
        m_found.push_back(finding);
    }
}

std::vector<std::string> Course::play() {
    journaltest::CapturedLog::reset();
    if (!opens()) {
        return m_found;
    }
    while (!m_work->takeModel()) {
        if (!m_operations.failed()) {
            return {"the lists cannot be read without a fault"};
        }
        m_operations.end();
    }
    change();
    checkAfterwards();
    return m_found;
}

class IoErrors {
public:
    std::vector<std::string> play(std::uint64_t seed) {
        const Kind& kind = kKinds[seed % kKinds.size()];
        const std::uint64_t rest = seed / kKinds.size();
        const std::uint64_t number = rest % kCourses;
        // Each step comes once before one comes again; the first are among the changes, not at the start.
        const std::size_t steps = stepsOf(kind, number);
        const bool lasts = rest / kCourses % 2 == 1;
        const Fault fault{
            kind, (steps * (number + 1) / (kCourses + 1) + rest / kCourses / 2 * kStride) % steps, lasts};
        std::vector<std::string> found = Course(m_file, number, fault).play();
        for (std::string& each : found) {
            each = std::string(kind.name) + (lasts ? " from operation " : " at operation ") +
                   std::to_string(fault.step) + " of course " + std::to_string(number) + ": " + each;
        }
        return found;
    }

private:
    static constexpr std::size_t kStride = 7919;

    /// The operations of the kind in a course without a fault.
    [[nodiscard]] std::size_t stepsOf(const Kind& kind, std::uint64_t number) {
        std::size_t& steps = m_steps[{kind.operation, number}];
        if (steps == 0) {
            Course course(m_file, number, {kind, static_cast<std::size_t>(-1), false});
            static_cast<void>(course.play());
            steps = course.operations() + 1;
        }
        return steps;
    }

    TemporaryDirectory m_directory;
    const std::filesystem::path m_file = m_directory.path() / "journal.db";
    std::map<std::pair<Operation, std::uint64_t>, std::size_t> m_steps;
};

}  // namespace
}  // namespace reliability

int main(int argc, char** argv) {
    reliability::IoErrors errors;
    return reliability::Rounds("io-errors", argc, argv, 176).play([&](std::uint64_t seed) {
        return errors.play(seed);
    });
}
