#pragma once

#include <cstddef>
#include <list>
#include <mutex>
#include <string>

#include "host/database/DatabaseSession.h"

namespace host {

/// The texts of the pages that were read last, each with the state of the database that it shows. A page is
/// found only in the same state, so every change of the database makes it invalid.
///
/// Thread-safe.
class PageCache {
public:
    /// The bytes of all texts. A longer text is not stored.
    static constexpr std::size_t kMaxBytes = 2U * 1024U * 1024U;

    /// Copies the text of a page into `text`; returns false if the cache does not have it in this state.
    [[nodiscard]] bool find(const std::string& page, const DatabaseState& state, std::string& text);
    /// Stores the text of a page, in place of pages of other states, then of those that were used longest
    /// ago.
    void store(const std::string& page, const DatabaseState& state, const std::string& text);

private:
    struct Entry {
        std::string page;
        DatabaseState state;
        std::string text;
    };

    std::mutex m_mutex;
    // Guarded by m_mutex.
    std::list<Entry> m_entries;  // the one that was used last comes first
};

}  // namespace host
