#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "platform/csta/CSTAEvent.h"

/// The switch's own state. `status` is one of the `communicationsServiceTexts::systemState_...` texts or
/// another word of the switch.
class CSTASystemStatusEvent final
    : public CSTAEventOf<CSTASystemStatusEvent, CSTAEvent, CSTAEventCode::eSystemStatus,
                         &CSTAEventObserverBase::handleCSTASystemStatusEvent> {
public:
    /// The switch's report on a feature of the phone, as texts. The journal logs it.
    struct FeatureData {
        std::string featureName;
        std::string action;
        std::string deActivation;
        std::string status;
        std::string availability;
        std::string buttonId;
    };

    [[nodiscard]] const std::string& getSystemStatus() const noexcept { return m_status; }
    [[nodiscard]] const std::string& getSystemStatusInfo() const noexcept { return m_info; }
    [[nodiscard]] const FeatureData& getSystemStatusFeatureData() const noexcept { return m_feature; }
    void setSystemStatus(std::string status, std::string info = {}) {
        m_status = std::move(status);
        m_info = std::move(info);
    }
    void setSystemStatusFeatureData(FeatureData data) { m_feature = std::move(data); }

    [[nodiscard]] std::string toString() const override { return "systemStatus: " + m_status; }

private:
    std::string m_status;
    std::string m_info;
    FeatureData m_feature;
};

/// The devices that the phone serves: type 0 is its own line, 2 a shared or Bluetooth line of a SIP phone.
/// Calls of devices of any other type (1, ...) do not belong to this phone; the journal ignores them.
class CSTASwitchingFunctionDevices final
    : public CSTAEventOf<CSTASwitchingFunctionDevices, CSTAEvent, CSTAEventCode::eSwitchingFunctionDevices,
                         &CSTAEventObserverBase::handleCSTASwitchingFunctionDevices> {
public:
    [[nodiscard]] std::size_t getNumberOfDevices() const noexcept { return m_devices.size(); }
    /// `index` counts from 1. -1 and an empty id beyond the last device.
    [[nodiscard]] int getDeviceType(std::size_t index) const noexcept {
        return holds(index) ? m_devices[index - 1].type : -1;
    }
    [[nodiscard]] std::string getDeviceID(std::size_t index) const {
        return holds(index) ? m_devices[index - 1].id : std::string();
    }
    void addDevice(int type, std::string deviceId) { m_devices.push_back({type, std::move(deviceId)}); }

    [[nodiscard]] std::string toString() const override {
        return "devices: " + std::to_string(m_devices.size());
    }

private:
    struct Device {
        int type = -1;
        std::string id;
    };

    [[nodiscard]] bool holds(std::size_t index) const noexcept {
        return index >= 1 && index <= m_devices.size();
    }

    std::vector<Device> m_devices;
};
