#pragma once

#include <array>
#include <cstddef>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// One member of a conference: the call that it was before, and its device.
struct QorvexConferencedCallID {
    std::string callId;
    std::string deviceId;
};

namespace journal {

/// A SIP phone's conference: the call that it goes on as, and the calls that it was joined from.
struct SipConference {
    std::string newConnectionCallId;
    std::string primaryOldCallId;
    std::string secondaryOldCallId;
    /// One of the old calls has ended already.
    bool memberCleared = false;
    /// The calls that the conference was joined from before it grew to this one.
    std::vector<std::string> formerOldCallIds = {};

    /// In the order of their coming; some may be empty.
    [[nodiscard]] std::vector<std::string> oldCallIds() const;
    /// The conference of that call id goes on in this one.
    [[nodiscard]] bool continues(const std::string& conferenceCallId) const;
};

/// The conferences that the phone takes part in; two at most, on a SIP phone one.
///
/// Threads: every operation is called with the call-map lock held. Slots are numbered 0 and 1; -1 is no slot.
class Conferences {
public:
    using Members = std::list<QorvexConferencedCallID>;
    static constexpr std::size_t kMaxConferences = 2;

    Conferences() = default;
    Conferences(const Conferences&) = delete;
    Conferences& operator=(const Conferences&) = delete;
    ~Conferences() = default;

    /// 0 to 2.
    [[nodiscard]] int getNumberOfConferences() const;
    /// The slot whose conference has exactly this call id; false, and -1, when there is none.
    bool searchConferenceIDIndex(const std::string& conferenceCallId, int& index) const;
    /// The first free slot; false, and -1, when both are taken.
    bool getNewConferenceIDIndex(int& index) const;
    /// The member of the conference in slot `index` with exactly this device id; false when there is none.
    bool searchDeviceIDInConference(int index, const std::string& deviceId, Members::iterator& member);

    /// Fills a free slot.
    void addConference(int index, const std::string& conferenceCallId);
    /// The members of a conference in the order of their coming; `index` is a slot in use.
    [[nodiscard]] Members& members(int index) {
        return m_conferences[static_cast<std::size_t>(index)]->members;
    }
    /// Ends the conference with this call id and hands its members out; none when there is no such conference.
    [[nodiscard]] Members takeMembers(const std::string& conferenceCallId);
    /// Forgets one member, and with the last one the conference.
    void removeMember(int index, Members::iterator member);
    /// A call has ended, or goes on under another id, outside its conference.
    void forgetCall(const std::string& callId);
    void removeConference(int index) { m_conferences[static_cast<std::size_t>(index)].reset(); }
    void removeAllConferences();

    /// Guarded by the call-map lock, like everything here.
    std::optional<SipConference> m_sipConference;

    /// A switch writes "0" where it has no call.
    [[nodiscard]] static bool isEmptyCallId(const std::string& callId) {
        return callId.empty() || callId == "0";
    }

private:
    struct Conference {
        std::string callId;
        Members members;
    };

    // Guarded by the call-map lock.
    std::array<std::unique_ptr<Conference>, kMaxConferences> m_conferences;
};

}  // namespace journal
