#include "host/csta/requests/FilterGroups.h"

#include <algorithm>
#include <array>
#include <span>

#include "host/csta-wire/MessageWriter.h"

namespace host {

namespace {

using Setting = CSTAMonitorFilter::Setting;
using Getter = Setting (CSTAMonitorFilter::*)() const noexcept;

struct FilterMember {
    std::string_view name;
    /// The member's own setting; `nullptr` if only the group has one.
    Getter own = nullptr;
    /// Delivered even if the group is suppressed.
    bool alwaysOn = false;
};

struct FilterGroup {
    std::string_view name;
    Getter setting;
    std::span<const FilterMember> members;
};

// Groups and members in the order of the schema.

constexpr std::array kCallControl = {
    FilterMember{"bridged"},
    FilterMember{"callCleared"},
    FilterMember{"conferenced"},
    FilterMember{"connectionCleared"},
    FilterMember{"delivered"},
    FilterMember{"digitsDialed"},
    FilterMember{"diverted"},
    FilterMember{"established"},
    FilterMember{"failed"},
    FilterMember{"held", &CSTAMonitorFilter::held},
    FilterMember{"networkCapabilitiesChanged"},
    FilterMember{"networkReached"},
    FilterMember{"offered"},
    FilterMember{"originated"},
    FilterMember{"queued"},
    FilterMember{"retrieved", &CSTAMonitorFilter::retrieved},
    FilterMember{"serviceInitiated", &CSTAMonitorFilter::serviceInitiated},
    FilterMember{"transferred"},
};

constexpr std::array kCallAssociated = {
    FilterMember{"callInformation", &CSTAMonitorFilter::callInformation},
    FilterMember{"charging"},
    FilterMember{"digitsGenerated"},
    FilterMember{"telephonyTonesGenerated"},
    FilterMember{"serviceCompletionFailure"},
};

constexpr std::array kPhysicalDevice = {
    FilterMember{"buttonInformation"}, FilterMember{"buttonPress"},    FilterMember{"displayUpdated"},
    FilterMember{"hookswitch"},        FilterMember{"lampMode"},       FilterMember{"messageWaiting"},
    FilterMember{"microphoneGain"},    FilterMember{"microphoneMute"}, FilterMember{"ringerStatus"},
    FilterMember{"speakerMute"},       FilterMember{"speakerVolume"},
};

constexpr std::array kLogicalDevice = {
    FilterMember{"agentBusy"},
    FilterMember{"agentLoggedOn"},
    FilterMember{"agentLoggedOff"},
    FilterMember{"agentNotReady"},
    FilterMember{"agentReady"},
    FilterMember{"agentWorkingAfterCall"},
    FilterMember{"autoAnswer"},
    FilterMember{"autoWorkMode"},
    FilterMember{"callBack", nullptr, true},
    FilterMember{"callBackMessage", nullptr, true},
    FilterMember{"callerIDStatus"},
    FilterMember{"doNotDisturb", &CSTAMonitorFilter::fsDnd},
    FilterMember{"forwarding"},
    FilterMember{"routeingMode"},
};

constexpr std::array kMaintenance = {
    FilterMember{"backInService"},
    FilterMember{"deviceCapabilityChanged"},
    FilterMember{"outOfService"},
    FilterMember{"partiallyInService"},
};

constexpr std::array kPrivate = {FilterMember{"private", &CSTAMonitorFilter::callLogEntry}};

constexpr std::array kGroups = {
    FilterGroup{"callcontrol", &CSTAMonitorFilter::callControl, kCallControl},
    FilterGroup{"callAssociated", &CSTAMonitorFilter::callAssociated, kCallAssociated},
    FilterGroup{"physicalDeviceFeature", &CSTAMonitorFilter::physicalDevice, kPhysicalDevice},
    FilterGroup{"logicalDeviceFeature", &CSTAMonitorFilter::logicalDevice, kLogicalDevice},
    FilterGroup{"maintenance", &CSTAMonitorFilter::system, kMaintenance},
    FilterGroup{"private", &CSTAMonitorFilter::vendorSpecific, kPrivate},
};

Setting settingOf(const CSTAMonitorFilter& filter, const FilterGroup& group,
                  const FilterMember& member) noexcept {
    const Setting groupSetting = (filter.*group.setting)();
    if (member.alwaysOn) {
        return groupSetting ? Setting(false) : groupSetting;
    }
    const Setting own = member.own != nullptr ? (filter.*member.own)() : Setting();
    return own ? own : groupSetting;
}

}  // namespace

Setting memberSetting(const CSTAMonitorFilter& filter, std::string_view group,
                      std::string_view member) noexcept {
    for (const FilterGroup& candidate : kGroups) {
        if (candidate.name != group) {
            continue;
        }
        for (const FilterMember& one : candidate.members) {
            if (one.name == member) {
                return settingOf(filter, candidate, one);
            }
        }
    }
    return {};
}

bool suppressesAnything(const CSTAMonitorFilter& filter) noexcept {
    return std::any_of(kGroups.begin(), kGroups.end(), [&filter](const FilterGroup& group) {
        return std::any_of(group.members.begin(), group.members.end(), [&](const FilterMember& member) {
            return settingOf(filter, group, member).value_or(false);
        });
    });
}

void writeFilterGroups(MessageWriter& writer, const CSTAMonitorFilter& filter, bool alsoFalse) {
    for (const FilterGroup& group : kGroups) {
        const auto isWritten = [&](const FilterMember& member) {
            const Setting setting = settingOf(filter, group, member);
            return setting.has_value() && (alsoFalse || *setting);
        };
        if (std::none_of(group.members.begin(), group.members.end(), isWritten)) {
            continue;
        }
        writer.open(group.name);
        for (const FilterMember& member : group.members) {
            if (isWritten(member)) {
                writer.flag(member.name, *settingOf(filter, group, member));
            }
        }
        writer.close();
    }
}

}  // namespace host
