#include <sqlite3.h>

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "host/database/Database.h"
#include "tests/reliability/database/SimulatedDisk.h"
#include "tests/reliability/support/Rounds.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/TemporaryDirectory.h"

// Changes of several threads that wait at the same moment share a transaction, while some of them fail
// alone and operations of the disk fail. Each must be there as a whole or not at all: at once if its thread
// was told that it is stored, also after a power cut, and at last if it was kept.
namespace reliability {
namespace {

using Operation = SimulatedDisk::Operation;
using Outcome = host::Database::Outcome;
using Session = host::Database::Session;

struct Fault {
    const char* name;
    Operation operation;
    int error;
};

constexpr std::array<Fault, 9> kFaults{{{"read: I/O error", Operation::eRead, SQLITE_IOERR_READ},
                                        {"write: I/O error", Operation::eWrite, SQLITE_IOERR_WRITE},
                                        {"write: disk full", Operation::eWrite, SQLITE_FULL},
                                        {"sync: I/O error", Operation::eSync, SQLITE_IOERR_FSYNC},
                                        {"sync: disk full", Operation::eSync, SQLITE_FULL},
                                        {"lock: busy", Operation::eLock, SQLITE_BUSY},
                                        {"lock: I/O error", Operation::eLock, SQLITE_IOERR_LOCK},
                                        {"shared memory", Operation::eShared, SQLITE_IOERR_SHMMAP},
                                        {"open: cannot open", Operation::eOpen, SQLITE_CANTOPEN}}};
constexpr int kGroups = 8;

/// A change of some rows, and its end.
struct Change {
    std::string key;
    std::size_t rows = 1;
    std::size_t bytes = 0;
    /// It throws after its last row.
    bool fails = false;
    Outcome outcome = Outcome::eRefused;
    /// The calls of `done`, and the changes of the disk when the group had ended.
    int ends = 0;
    std::size_t point = 0;
};

class Course {
public:
    Course(const std::filesystem::path& file, std::uint64_t seed) : m_file(file), m_dice(seed) {}

    std::vector<std::string> play();

private:
    void failSometimes();
    void makeGroup(int number);
    Outcome make(Change& change);
    void check(const Change& change, const std::map<std::string, std::size_t>& rows, bool isCut,
               std::size_t cut);
    void checkAll(host::Database& database, const char* when, bool isCut, std::size_t cut);

    const std::filesystem::path m_file;
    Dice m_dice;
    const std::shared_ptr<SimulatedDisk> m_disk = std::make_shared<SimulatedDisk>();
    std::unique_ptr<host::Database> m_database;
    std::vector<std::unique_ptr<Change>> m_changes;
    std::string m_when;
    std::vector<std::string> m_found;
};

Outcome Course::make(Change& change) {
    return m_database->writeOrKeep(std::make_shared<host::DatabaseChange>(host::DatabaseChange{
        .what = "storing " + change.key,
        .work =
            [key = change.key, count = change.rows, bytes = change.bytes,
             fails = change.fails](Session& session) {
                for (std::size_t row = 0; row < count; ++row) {
                    session.query("INSERT INTO setting (line, key, value) VALUES (?, ?, ?)")
                        .bind(key)
                        .bind(std::to_string(row))
                        .bind(std::string(bytes, 'x'))
                        .run();
                }
                if (fails) {
                    throw std::runtime_error("the reason");
                }
            },
        .done = [&change](bool) { ++change.ends; },
        .bytes = change.bytes}));
}

/// Makes several changes on a thread each, in their order, which all wait at the same moment.
void Course::makeGroup(int number) {
    const std::size_t count = 1 + m_dice.below(6);
    std::vector<Change*> group;
    for (std::size_t at = 0; at < count; ++at) {
        m_changes.push_back(
            std::make_unique<Change>(Change{.key = std::to_string(number) + "." + std::to_string(at),
                                            .rows = 1 + m_dice.below(3),
                                            .bytes = std::size_t{m_dice.chance(10) ? 5000U : 20U},
                                            .fails = m_dice.chance(15)}));
        group.push_back(m_changes.back().get());
    }
    std::vector<std::thread> threads;
    const auto start = [&](Session& /*session*/) {
        for (Change* const each : group) {
            const std::size_t waiting = m_database->waitingCount();
            const std::size_t kept = m_database->keptCount();
            threads.emplace_back([this, each] { each->outcome = make(*each); });
            // While changes are kept, it joins them without waiting.
            while (m_database->waitingCount() == waiting && m_database->keptCount() == kept) {
                std::this_thread::yield();
            }
        }
    };
    if (!m_database->read("holding the lock", start) && threads.empty()) {
        // A fault of the lock: one after the other.
        for (Change* const each : group) {
            each->outcome = make(*each);
        }
    }
    for (std::thread& each : threads) {
        each.join();
    }
    for (Change* const each : group) {
        each->point = m_disk->changes();
    }
}

/// Lets some operations of one kind fail.
void Course::failSometimes() {
    if (m_dice.chance(25)) {
        return;
    }
    const Fault& fault = kFaults[m_dice.below(kFaults.size())];
    m_when = fault.name;
    const auto count = std::make_shared<std::size_t>(0);
    const std::size_t first = m_dice.below(fault.operation == Operation::eSync ? 10 : 60);
    const std::size_t end = first + 1 + m_dice.below(12);
    m_disk->setFaults([=, &fault](Operation operation, const std::string&, std::size_t) {
        const bool fails = operation == fault.operation && *count >= first && *count < end;
        *count += operation == fault.operation ? 1 : 0;
        return fails ? fault.error : 0;
    });
}

void Course::check(const Change& change, const std::map<std::string, std::size_t>& rows, bool isCut,
                   std::size_t cut) {
    const auto found = rows.find(change.key);
    const std::size_t count = found == rows.end() ? 0 : found->second;
    const auto fault = [&](const std::string& text) {
        m_found.push_back(m_when + ": change " + change.key + " " + text);
    };
    if (count != 0 && count != change.rows) {
        fault("is stored in part");
    }
    if (count != 0 && change.fails) {
        fault("has failed and is stored");
    }
    const bool mustBe = isCut ? change.outcome == Outcome::eStored && change.point <= cut : !change.fails;
    if (mustBe && count == 0) {
        fault("is missing");
    }
    if (!isCut && change.ends != 1) {
        fault("has ended " + std::to_string(change.ends) + " times");
    }
    if (!change.fails && change.outcome == Outcome::eRefused) {
        fault("is refused because of another one");
    }
}

void Course::checkAll(host::Database& database, const char* when, bool isCut, std::size_t cut) {
    m_when += when;
    std::map<std::string, std::size_t> rows;
    if (!database.read("counting", [&](Session& session) {
            host::Query query = session.query("SELECT line, count(*) FROM setting GROUP BY line");
            while (query.next()) {
                const std::string key = query.text();
                rows[key] = static_cast<std::size_t>(query.number());
            }
        })) {
        m_found.push_back(m_when + ": the rows cannot be read");
        return;
    }
    for (const auto& each : m_changes) {
        check(*each, rows, isCut, cut);
    }
}

std::vector<std::string> Course::play() {
    SimulatedDisk::use(m_disk);
    const host::Database::Options options{std::chrono::milliseconds(0)};
    m_database = std::make_unique<host::Database>(m_file, options);
    failSometimes();
    for (int number = 0; number < kGroups; ++number) {
        makeGroup(number);
    }
    m_disk->setFaults({});
    const std::size_t changes = m_disk->changes();
    if (!m_database->probe()) {
        m_found.push_back(m_when + ": the database is not healthy after the fault has ended");
    }
    checkAll(*m_database, ", at the end", false, 0);
    m_database.reset();

    const std::size_t cut = m_dice.below(changes + 1);
    SimulatedDisk::use(std::make_shared<SimulatedDisk>(m_disk->filesAfterCut(cut, m_dice)));
    host::Database left(m_file, options);
    checkAll(left, ", after a power cut", true, cut);
    return m_found;
}

}  // namespace
}  // namespace reliability

int main(int argc, char** argv) {
    journaltest::CapturedLog::switchOff();
    const TemporaryDirectory directory;
    return reliability::Rounds("group-commit", argc, argv, 300).play([&](std::uint64_t seed) {
        return reliability::Course(directory.path() / "journal.db", seed).play();
    });
}
