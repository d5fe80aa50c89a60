#pragma once

#include <array>
#include <cstddef>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// One member of a conference: its former call and its device.
struct QorvexConferencedCallID {
    std::string callId;
    std::string deviceId;
};

namespace journal {

/// The conference of a SIP phone: its own call, and the calls that were joined.
struct SipConference {
    std::string newConnectionCallId;
    std::string primaryOldCallId;
    std::string secondaryOldCallId;
    /// One of the old calls has ended.
    bool memberCleared = false;
    /// The calls that were joined to the conference that this one continues.
    std::vector<std::string> formerOldCallIds = {};

    /// Returns all old calls, the oldest first; some may be empty.
    [[nodiscard]] std::vector<std::string> oldCallIds() const;
    /// True if this conference continues the one with that call id.
    [[nodiscard]] bool continues(const std::string& conferenceCallId) const;
};

/// The conferences of the phone: at most two in slots 0 and 1, and one on a SIP phone. -1 means no slot.
///
/// Requires: the call-map lock is held.
class Conferences {
public:
    using Members = std::list<QorvexConferencedCallID>;
    static constexpr std::size_t kMaxConferences = 2;

    Conferences() = default;
    Conferences(const Conferences&) = delete;
    Conferences& operator=(const Conferences&) = delete;
    ~Conferences() = default;

    /// Returns 0 to 2.
    [[nodiscard]] int getNumberOfConferences() const;
    /// Finds the slot of the conference with this call id. Returns false and sets -1 if there is none.
    bool searchConferenceIDIndex(const std::string& conferenceCallId, int& index) const;
    /// Finds the first free slot. Returns false and sets -1 if both are in use.
    bool getNewConferenceIDIndex(int& index) const;
    /// Finds the member with this device id of the conference in slot `index`. Returns false if there is
    /// none.
    bool searchDeviceIDInConference(int index, const std::string& deviceId, Members::iterator& member);

    /// Requires: slot `index` is free.
    void addConference(int index, const std::string& conferenceCallId);
    /// Returns the members of a conference, the oldest first. Requires: slot `index` is in use.
    [[nodiscard]] Members& members(int index) {
        return m_conferences[static_cast<std::size_t>(index)]->members;
    }
    /// Removes the conference with this call id and returns its members; an empty list if there is no such
    /// conference.
    [[nodiscard]] Members takeMembers(const std::string& conferenceCallId);
    /// Removes one member, and with the last one the conference.
    void removeMember(int index, Members::iterator member);
    /// Removes a call that has ended outside its conference from all conferences.
    void removeEndedCall(const std::string& callId);
    void removeConference(int index) { m_conferences[static_cast<std::size_t>(index)].reset(); }
    void removeAllConferences();

    /// The conference of a SIP phone. Guarded by the call-map lock.
    std::optional<SipConference> m_sipConference;

    /// True for an empty id and for "0", which a switch sends for no call.
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
