#pragma once

#include <cstdint>
#include <list>
#include <string>

#include "journal-items/CallInfo.h"
#include "journal-items/CallItemWithPicture.h"
#include "journal-items/Duration.h"
#include "journal-items/Redirecting.h"

/// A party whose calls were forwarded, with one occurrence for each call, newest at the front. A plain value
/// without synchronisation; copying duplicates the whole occurrence list.
class ForwardedCallItem : public CallItemWithPicture {
public:
    /// One forwarded call.
    class ForwardedCallInfo : public CallInfo, public Duration, public Redirecting {
    public:
        /// The destination of the call; empty if the switch did not report it.
        [[nodiscard]] const std::string& getForwardedToNumber() const noexcept { return m_forwardedToNumber; }
        void setForwardedToNumber(const std::string& number) { m_forwardedToNumber = number; }

        /// The kind of the destination device and the reason, in the switch's own numbers; 0 if unknown. Only
        /// copied.
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
    /// Replaces the list without limiting it; only `addCallInfoToList` does.
    void setForwardedCallInfoList(const std::list<ForwardedCallInfo>& infoList) { m_infoList = infoList; }
    /// Adds the newest call at the front; drops the oldest one beyond `kMaxOccurrences`.
    void addCallInfoToList(const ForwardedCallInfo& info) { addNewest(m_infoList, info); }

    [[nodiscard]] bool sameContent(const ForwardedCallItem& other) const {
        return CallItemWithPicture::sameContent(other) && m_infoList == other.m_infoList;
    }

private:
    std::list<ForwardedCallInfo> m_infoList;
};
