#pragma once

#include <list>
#include <string>

#include "journal-items/CallInfo.h"
#include "journal-items/CallItemWithPicture.h"
#include "journal-items/Duration.h"
#include "journal-items/Redirecting.h"
#include "journal-items/TimeFormat.h"

/// A party whose calls were answered, with one occurrence for each call, newest at the front. A plain value
/// without synchronisation; copying duplicates the whole occurrence list.
class ReceivedCallItem : public CallItemWithPicture {
public:
    /// One answered call.
    class ReceivedCallInfo : public CallInfo, public Duration, public TimeFormat, public Redirecting {
    public:
        bool operator==(const ReceivedCallInfo&) const = default;
    };

    ReceivedCallItem() = default;
    ReceivedCallItem(const std::string& entryId, const std::string& firstname, const std::string& surname,
                     const std::list<ReceivedCallInfo>& infoList)
        : CallItemWithPicture(entryId, firstname, surname), m_infoList(infoList) {}

    [[nodiscard]] const std::list<ReceivedCallInfo>& getReceivedCallInfoList() const noexcept {
        return m_infoList;
    }
    /// Replaces the list without limiting it; only `addCallInfoToList` does.
    void setReceivedCallInfoList(const std::list<ReceivedCallInfo>& infoList) { m_infoList = infoList; }
    /// Adds the newest call at the front; drops the oldest one beyond `kMaxOccurrences`.
    void addCallInfoToList(const ReceivedCallInfo& info) { addNewest(m_infoList, info); }

    [[nodiscard]] bool sameContent(const ReceivedCallItem& other) const {
        return CallItemWithPicture::sameContent(other) && m_infoList == other.m_infoList;
    }

private:
    std::list<ReceivedCallInfo> m_infoList;
};
