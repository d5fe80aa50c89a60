#pragma once

#include <list>
#include <string>

#include "journal-items/CallInfo.h"
#include "journal-items/CallItemWithPicture.h"
#include "journal-items/Duration.h"
#include "journal-items/Redirecting.h"
#include "journal-items/Sparse.h"
#include "journal-items/TimeFormat.h"

/// A dialled number with one occurrence for each call, newest at the front. A plain value without
/// synchronisation; copying duplicates the whole occurrence list.
class DialledCallItem : public CallItemWithPicture {
public:
    /// One dialled call.
    class DialledCallInfo : public CallInfo, public Duration, public TimeFormat, public Redirecting {
    public:
        /// The connected number, if the dialled number was a feature access code and differs from it.
        [[nodiscard]] const std::string& getSubstituteNumber() const noexcept {
            return m_substituteNumber.get();
        }
        void setSubstituteNumber(const std::string& number) { m_substituteNumber.set(number); }

        /// True if the dialled number was a feature access code.
        [[nodiscard]] bool getFeatureAccessCode() const noexcept { return m_featureAccessCode; }
        void setFeatureAccessCode(bool featureAccessCode) noexcept {
            m_featureAccessCode = featureAccessCode;
        }

        bool operator==(const DialledCallInfo&) const = default;

    private:
        SparseText m_substituteNumber;
        bool m_featureAccessCode = false;
    };

    DialledCallItem() = default;
    DialledCallItem(const std::string& entryId, const std::string& firstname, const std::string& surname,
                    const std::list<DialledCallInfo>& infoList)
        : CallItemWithPicture(entryId, firstname, surname), m_infoList(infoList) {}

    /// The number that groups calls into one item: the number that was looked up. The accessors' spelling is
    /// part of the contract.
    [[nodiscard]] const std::string& getJournalSeviceGroupBy() const noexcept { return m_groupBy; }
    void setJournalSeviceGroupBy(const std::string& groupBy) { m_groupBy = groupBy; }

    [[nodiscard]] const std::list<DialledCallInfo>& getDialledCallInfoList() const noexcept {
        return m_infoList;
    }
    /// Replaces the list without limiting it; only `addCallInfoToList` does.
    void setDialledCallInfoList(const std::list<DialledCallInfo>& infoList) { m_infoList = infoList; }
    /// Adds the newest call at the front; drops the oldest one beyond `kMaxOccurrences`.
    void addCallInfoToList(const DialledCallInfo& info) { addNewest(m_infoList, info); }

    [[nodiscard]] bool sameContent(const DialledCallItem& other) const {
        return CallItemWithPicture::sameContent(other) && m_groupBy == other.m_groupBy &&
               m_infoList == other.m_infoList;
    }

private:
    std::string m_groupBy;
    std::list<DialledCallInfo> m_infoList;
};
