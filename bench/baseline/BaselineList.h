#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace bench {

/// The entry of a party with its newest calls, newest first. A plain value.
struct BaselineEntry {
    struct Call {
        std::string time;
        std::int64_t seconds = 0;
    };

    static constexpr std::size_t kMaxCalls = 10;

    std::int64_t id = 0;
    std::string number;
    std::string name;
    std::deque<Call> calls;
};

/// The list of the baseline: the parties of the newest calls. Not thread-safe.
class BaselineList {
public:
    static constexpr std::size_t kMaxEntries = 1000;

    struct Change {
        const BaselineEntry& entry;
        /// The id of the entry that has left the list; 0 if there is none.
        std::int64_t evicted = 0;
    };

    /// Adds the call to the entry of its number, which becomes the first.
    Change merge(std::string number, std::string name, BaselineEntry::Call call) {
        const auto found = m_byNumber.find(number);
        if (found != m_byNumber.end()) {
            m_entries.splice(m_entries.begin(), m_entries, found->second);
        } else {
            m_entries.push_front({++m_lastId, std::move(number), std::move(name), {}});
            m_byNumber.emplace(m_entries.front().number, m_entries.begin());
        }
        BaselineEntry& entry = m_entries.front();
        entry.calls.push_front(std::move(call));
        if (entry.calls.size() > BaselineEntry::kMaxCalls) {
            entry.calls.pop_back();
        }
        return {entry, m_entries.size() > kMaxEntries ? evictLast() : 0};
    }

private:
    std::int64_t evictLast() {
        const std::int64_t id = m_entries.back().id;
        m_byNumber.erase(m_entries.back().number);
        m_entries.pop_back();
        return id;
    }

    std::list<BaselineEntry> m_entries;
    /// The keys are the numbers in the entries.
    std::unordered_map<std::string_view, std::list<BaselineEntry>::iterator> m_byNumber;
    std::int64_t m_lastId = 0;
};

}  // namespace bench
