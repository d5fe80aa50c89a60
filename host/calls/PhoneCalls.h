#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/calls/PhoneCall.h"

class CSTAEvent;

namespace host {

/// The live calls of a line, by the monitored device and the call id. The link keeps them on its reader
/// thread; `count` alone is for any thread.
class PhoneCalls {
public:
    /// Receives each call that begins or changes, and each one that ends. Either function may be empty.
    struct Listener {
        std::function<void(const PhoneCall&)> changed;
        std::function<void(const PhoneCall&)> ended;
    };

    /// Listeners are called in the order in which they are added, until the end of the object. They must not
    /// change the calls.
    void addListener(Listener listener) { m_listeners.push_back(std::move(listener)); }

    /// Returns the call, or null. Valid until the next change.
    [[nodiscard]] const PhoneCall* find(std::string_view device, std::string_view callId) const;
    /// Stores the call; replaces one of the same device and id.
    void store(PhoneCall call);
    /// Has no effect on an unknown call.
    void remove(std::string_view device, std::string_view callId);
    /// Removes all calls, without a report to the listeners.
    void clear();

    /// Returns the calls in the order of device and id.
    [[nodiscard]] std::vector<PhoneCall> all() const;
    /// Returns the first call in the order `less`, or null. Valid until the next change.
    template <typename Less>
    [[nodiscard]] const PhoneCall* first(const Less& less) const {
        const auto found = std::min_element(
            m_calls.begin(), m_calls.end(),
            [&less](const auto& one, const auto& other) { return less(one.second, other.second); });
        return found == m_calls.end() ? nullptr : &found->second;
    }
    /// Returns the calls that are in the conference.
    [[nodiscard]] std::vector<PhoneCall> membersOf(std::string_view device,
                                                   std::string_view conferenceId) const;
    /// True for a call in a conference that is live; it ends with the conference.
    [[nodiscard]] bool isInConference(const PhoneCall& call) const {
        return !call.conferenceId.empty() && find(call.device, call.conferenceId) != nullptr;
    }
    /// The time now for an event of the device: in the clock of its call (`timeIn`) if that is live.
    [[nodiscard]] PhoneCall::Time timeOf(const CSTAEvent& event, std::string_view device) const;
    /// The number of calls; a conference is one. Thread-safe.
    [[nodiscard]] std::size_t count() const noexcept { return m_count; }

private:
    using Key = std::pair<std::string, std::string>;

    void updateCount();

    std::map<Key, PhoneCall> m_calls;
    std::atomic<std::size_t> m_count{0};
    std::vector<Listener> m_listeners;
};

}  // namespace host
