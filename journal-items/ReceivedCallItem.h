#pragma once

#include <list>
#include <string>

#include "journal-items/CallInfo.h"
#include "journal-items/CallItemWithPicture.h"
#include "journal-items/Duration.h"
#include "journal-items/Redirecting.h"
#include "journal-items/TimeFormat.h"

/// A party whose calls were answered, with one occurrence a call, newest in front. A plain value without
/// synchronisation; copying duplicates the whole occurrence list.
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
    /// Takes the list as it is; only `addCallInfoToList` limits it.
    void setReceivedCallInfoList(const std::list<ReceivedCallInfo>& infoList) { m_infoList = infoList; }
    /// Adds the newest call, in front; beyond `kMaxOccurrences` the oldest one is dropped.
    void addCallInfoToList(const ReceivedCallInfo& info) { addNewest(m_infoList, info); }

    [[nodiscard]] bool sameContent(const ReceivedCallItem& other) const {
        return CallItemWithPicture::sameContent(other) && m_infoList == other.m_infoList;
    }

private:
    std::list<ReceivedCallInfo> m_infoList;
};
