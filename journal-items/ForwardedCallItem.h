#pragma once

#include <cstdint>
#include <list>
#include <string>

#include "journal-items/CallInfo.h"
#include "journal-items/CallItemWithPicture.h"
#include "journal-items/Duration.h"
#include "journal-items/Redirecting.h"

/// A party whose calls were forwarded elsewhere, with one occurrence a call, newest in front. A plain value
/// without synchronisation; copying duplicates the whole occurrence list.
class ForwardedCallItem : public CallItemWithPicture {
public:
    /// One forwarded call.
    class ForwardedCallInfo : public CallInfo, public Duration, public Redirecting {
    public:
        /// Where the call went; empty when the switch did not say.
        [[nodiscard]] const std::string& getForwardedToNumber() const noexcept { return m_forwardedToNumber; }
        void setForwardedToNumber(const std::string& number) { m_forwardedToNumber = number; }

        /// What kind of device it went to and why, in the switch's own numbers; 0 when not known. Copied
        /// only.
        [[nodiscard]] std::int32_t getForwardingTarget() const noexcept { return m_forwardingTarget; }
        void setForwardingTarget(std::int32_t target) noexcept { m_forwardingTarget = target; }
        [[nodiscard]] std::int32_t getForwardingReason() const noexcept { return m_forwardingReason; }
        void setForwardingReason(std::int32_t reason) noexcept { m_forwardingReason = reason; }

        bool operator==(const ForwardedCallInfo&) const = default;

    private:
        std::string m_forwardedToNumber;
        std::int32_t m_forwardingTarget = 0;
        std::int32_t m_forwardingReason = 0;
    };

    ForwardedCallItem() = default;
    ForwardedCallItem(const std::string& entryId, const std::string& firstname, const std::string& surname,
                      const std::list<ForwardedCallInfo>& infoList)
        : CallItemWithPicture(entryId, firstname, surname), m_infoList(infoList) {}

    [[nodiscard]] const std::list<ForwardedCallInfo>& getForwardedCallInfoList() const noexcept {
        return m_infoList;
    }
    /// Takes the list as it is; only `addCallInfoToList` limits it.
    void setForwardedCallInfoList(const std::list<ForwardedCallInfo>& infoList) { m_infoList = infoList; }
    /// Adds the newest call, in front; beyond `kMaxOccurrences` the oldest one is dropped.
    void addCallInfoToList(const ForwardedCallInfo& info) { addNewest(m_infoList, info); }

    [[nodiscard]] bool sameContent(const ForwardedCallItem& other) const {
        return CallItemWithPicture::sameContent(other) && m_infoList == other.m_infoList;
    }

private:
    std::list<ForwardedCallInfo> m_infoList;
};
