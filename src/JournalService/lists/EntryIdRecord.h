#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>

namespace journal {

/// The entry ids of all lists and tables as far as they are known, so that these are seldom searched for a
/// free id.
///
/// An entry id is a time and eight hexadecimal digits. It begins with the time, so that a new one is greater
/// than all others unless two calls end in one second or the clock was set back. The ids of one time, the
/// last one that was asked for, are known exactly until `forget`.
///
/// Not thread-safe: guarded by the change lock.
class EntryIdRecord {
public:
    static constexpr std::size_t kDigits = 8;

    /// True if the ids that begin with `time` are known. If no entry has a greater id than the greatest one,
    /// no entry has an id that begins with a greater text.
    [[nodiscard]] bool knows(const std::string& time);
    /// Begins to record the ids of `time` anew: the caller adds the id of every entry.
    void begin(const std::string& time);
    void add(const std::string& entryId);
    /// Ends the record that `begin` began. `complete` is false if a table could not be read.
    void end(bool complete);

    /// Returns `entryId`, or the next id of its time that no entry has; from now on it is taken. Requires:
    /// the ids of its time are known, or have just been added.
    [[nodiscard]] std::string take(const std::string& entryId);
    /// Records that one entry less has the id.
    void release(const std::string& entryId);
    /// Entries may have come and gone.
    void forget() noexcept { m_isCurrent = false; }

    /// The part of the id before the digits. An id that a client made may be shorter.
    [[nodiscard]] static std::string timeOf(const std::string& entryId);

private:
    [[nodiscard]] std::string idOf(std::uint32_t number) const;
    /// True if the id has the form of `idOf` and its number is in the run.
    [[nodiscard]] bool isInRun(const std::string& entryId, std::uint32_t& number) const;
    [[nodiscard]] std::uint32_t nextFree(std::uint32_t first);

    /// False until all tables were read.
    bool m_isComplete = false;
    /// In the order of bytes. No entry has a greater one.
    std::string m_newest;

    /// True while `m_used` are the ids that begin with `m_time`.
    bool m_isCurrent = false;
    std::string m_time;
    /// The number of entries that have the id.
    std::unordered_map<std::string, unsigned> m_used;
    /// Call ids that are not numbers all ask for the same id, so the numbers that were found taken are kept:
    /// these so many from `m_runFirst`, without the free ones among them.
    std::uint32_t m_runFirst = 0;
    std::uint32_t m_runLength = 0;
    std::set<std::uint32_t> m_freeInRun;
};

}  // namespace journal
