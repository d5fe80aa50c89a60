#pragma once

#include <list>
#include <string>

#include "journal-items/CallInfo.h"
#include "journal-items/CallItemWithPicture.h"
#include "journal-items/Redirecting.h"
#include "journal-items/Sparse.h"
#include "journal-items/TimeFormat.h"

/// A party whose calls were missed, with one occurrence for each call, newest at the front. A plain value
/// without synchronisation; copying duplicates the whole occurrence list.
class MissedCallItem : public CallItemWithPicture {
public:
    /// One missed call.
    class MissedCallInfo : public CallInfo, public TimeFormat, public Redirecting {
    public:
        /// True if another user of the same line or group answered the call.
        [[nodiscard]] bool getCompletedElsewhere() const noexcept { return m_completedElsewhere; }
        void setCompletedElsewhere(bool completedElsewhere) noexcept {
            m_completedElsewhere = completedElsewhere;
        }

        /// The text that the switch gave a group's call; quoted when the group's entry is deleted.
        [[nodiscard]] const std::string& getGroupText() const noexcept { return m_groupText.get(); }
        void setGroupText(const std::string& groupText) { m_groupText.set(groupText); }

        /// The line on which the call was missed; empty if it did not arrive on a specific line.
        [[nodiscard]] const std::string& getLineKey() const noexcept { return m_lineKey.get(); }
        void setLineKey(const std::string& lineKey) { m_lineKey.set(lineKey); }

        bool operator==(const MissedCallInfo&) const = default;

    private:
        bool m_completedElsewhere = false;
        SparseText m_groupText;
        SparseText m_lineKey;
    };

    MissedCallItem() = default;
    MissedCallItem(const std::string& entryId, const std::string& firstname, const std::string& surname,
                   const std::list<MissedCallInfo>& infoList, bool viewed)
        : CallItemWithPicture(entryId, firstname, surname), m_infoList(infoList), m_viewed(viewed) {}

    [[nodiscard]] const std::list<MissedCallInfo>& getMissedCallInfoList() const noexcept {
        return m_infoList;
    }
    /// Replaces the list without limiting it; only `addCallInfoToList` does.
    void setMissedCallInfoList(const std::list<MissedCallInfo>& infoList) { m_infoList = infoList; }
    /// Adds the newest call at the front; drops the oldest one beyond `kMaxOccurrences`.
    void addCallInfoToList(const MissedCallInfo& info) { addNewest(m_infoList, info); }

    /// True if the user has seen the item. The number of new missed calls counts the unviewed items.
    [[nodiscard]] bool getViewed() const noexcept { return m_viewed; }
    void setViewed(bool viewed) noexcept { m_viewed = viewed; }

    [[nodiscard]] bool sameContent(const MissedCallItem& other) const {
        return CallItemWithPicture::sameContent(other) && m_infoList == other.m_infoList &&
               m_viewed == other.m_viewed;
    }

private:
    std::list<MissedCallInfo> m_infoList;
    bool m_viewed = false;
};
