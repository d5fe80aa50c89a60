#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "tests/reliability/support/Dice.h"

namespace reliability {

struct FileContent;

/// The contents of files by their names.
using Files = std::map<std::string, std::string>;

/// A disk in memory for SQLite. It records every change of its files, makes the contents that a power cut
/// leaves, and lets operations fail.
///
/// `use` makes it the disk of every SQLite file that is opened from then on; a file stays on the disk that it
/// was opened on. Thread-safe, but for `use` and the members that say otherwise.
class SimulatedDisk {
public:
    enum class Operation { eOpen, eRead, eWrite, eTruncate, eSync, eLock, eShared, eDelete };
    /// Returns the SQLite error of an operation, 0 for success. `call` counts the operations from 0 on.
    using Faults = std::function<int(Operation operation, const std::string& file, std::size_t call)>;

    explicit SimulatedDisk(Files files = {});
    ~SimulatedDisk();
    SimulatedDisk(const SimulatedDisk&) = delete;
    SimulatedDisk& operator=(const SimulatedDisk&) = delete;

    /// Makes the disk SQLite's; the first call registers it as the default file system of the process.
    static void use(const std::shared_ptr<SimulatedDisk>& disk);

    /// The number of changes recorded so far.
    [[nodiscard]] std::size_t changes() const;
    /// The number of operations so far.
    [[nodiscard]] std::size_t calls() const;
    /// The contents after a power cut after the first `changes` ones: what was synced is there; of what was
    /// not, each change is lost, there, or there in some of its sectors of 512 bytes, by the dice.
    [[nodiscard]] Files filesAfterCut(std::size_t changes, Dice& dice) const;
    [[nodiscard]] Files files() const;

    /// Replaces the faults of the operations from now on; an empty function ends them.
    void setFaults(Faults faults);

    // The implementation of the file system.
    struct Change {
        enum class Kind { eWrite, eTruncate, eSync, eDelete, eDeleteAndSync } kind;
        std::string file;
        std::size_t offset = 0;  // the size, of `eTruncate`
        std::string bytes{};
    };
    /// The error of the next operation.
    [[nodiscard]] int next(Operation operation, const std::string& file);
    void record(Change change);
    /// Creates the file if it is missing and `creates` is true; `nullptr` if it is missing.
    [[nodiscard]] std::shared_ptr<FileContent> open(const std::string& name, bool creates);
    void remove(const std::string& name, bool synced);
    [[nodiscard]] bool exists(const std::string& name) const;

private:
    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    const Files m_initial;
    std::map<std::string, std::shared_ptr<FileContent>> m_files;
    std::vector<Change> m_changes;
    std::size_t m_calls = 0;
    Faults m_faults;
};

}  // namespace reliability
