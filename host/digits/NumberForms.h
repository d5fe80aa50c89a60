#pragma once

#include <cstddef>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace host {

/// The normalised forms of the numbers that were asked for last: one call asks for its number several times,
/// and the number library takes some 40 microseconds each time.
///
/// Thread-safe; the lock is held for a look-up in a hash table only. Memory: at most 2,048 numbers of at most
/// 64 characters, some 0.35 MB.
class NumberForms {
public:
    [[nodiscard]] std::optional<std::string> find(std::string_view dialled);
    /// Forgets the number that was not asked for longest when there are too many. Does not store long texts.
    void store(const std::string& dialled, const std::string& form);

private:
    static constexpr std::size_t kMaxNumbers = 2048;
    static constexpr std::size_t kMaxLength = 64;
    /// A number as dialled and its form.
    using Entry = std::pair<const std::string, std::string>;

    std::mutex m_mutex;
    // Guarded by m_mutex.
    /// The number that was asked for last is at the front.
    std::list<Entry> m_entries;
    /// The keys are views of the entries, which do not move.
    std::unordered_map<std::string_view, std::list<Entry>::iterator> m_index;
};

}  // namespace host
