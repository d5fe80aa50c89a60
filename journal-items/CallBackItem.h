#pragma once

#include <cstdint>
#include <string>

#include "journal-items/CallItem.h"
#include "journal-items/NumberType.h"

/// A callback request: a party to call back, by the user or by the switch. A plain value without
/// synchronisation. It has no database id: its entry id is its key everywhere.
class CallBackItem : public CallItem {
public:
    /// The reason for the callback. The values are stored and sent; new ones are added at the end.
    enum class CallBackType : std::int32_t { eUnknown = 0, eOnBusy = 1, eOnNoReply = 2, eOnRequest = 3 };
    /// The progress of the callback. The values are stored and sent; new ones are added at the end.
    enum class CallBackState : std::int32_t { eUnknown = 0, eRequested = 1, eRinging = 2, eDone = 3 };

    CallBackItem() = default;
    CallBackItem(const std::string& entryId, const std::string& firstname, const std::string& surname,
                 const std::string& number, NumberType::NT numberType, const std::string& timeDate,
                 CallBackType callBackType, CallBackState callBackState, const std::string& deviceId)
        : CallItem(entryId, firstname, surname),
          m_number(number),
          m_numberType(numberType),
          m_timeDate(timeDate),
          m_callBackType(callBackType),
          m_callBackState(callBackState),
          m_deviceId(deviceId) {}

    /// The number to call back.
    [[nodiscard]] const std::string& getNumber() const noexcept { return m_number; }
    void setNumber(const std::string& number) { m_number = number; }

    [[nodiscard]] NumberType::NT getNumberType() const noexcept { return m_numberType; }
    void setNumberType(const NumberType::NT& numberType) noexcept { m_numberType = numberType; }

    /// The time of the callback request, in the form of `CallInfo::getTimeAndDate`.
    [[nodiscard]] const std::string& getTimeDate() const noexcept { return m_timeDate; }
    void setTimeDate(const std::string& timeDate) { m_timeDate = timeDate; }

    [[nodiscard]] CallBackType getCallBackType() const noexcept { return m_callBackType; }
    void setCallBackType(const CallBackType& type) noexcept { m_callBackType = type; }

    [[nodiscard]] CallBackState getCallBackState() const noexcept { return m_callBackState; }
    void setCallBackState(const CallBackState& state) noexcept { m_callBackState = state; }

    /// The own device that the callback belongs to.
    [[nodiscard]] const std::string& getDeviceId() const noexcept { return m_deviceId; }
    void setDeviceId(const std::string& deviceId) { m_deviceId = deviceId; }

    [[nodiscard]] bool sameContent(const CallBackItem& other) const {
        return CallItem::sameContent(other) && m_number == other.m_number &&
               m_numberType == other.m_numberType && m_timeDate == other.m_timeDate &&
               m_callBackType == other.m_callBackType && m_callBackState == other.m_callBackState &&
               m_deviceId == other.m_deviceId;
    }

private:
    std::string m_number;
    NumberType::NT m_numberType = NumberType::NT::eUnknown;
    std::string m_timeDate;
    CallBackType m_callBackType = CallBackType::eUnknown;
    CallBackState m_callBackState = CallBackState::eUnknown;
    std::string m_deviceId;
};
