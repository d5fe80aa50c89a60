#include "host/config/ConfigurationChanges.h"

#include <algorithm>
#include <set>
#include <type_traits>

namespace host {
namespace {

struct Key {
    const char* name;
    bool (*isEqual)(const Configuration& before, const Configuration& after);
};

template <auto Section, auto Member>
constexpr bool equal(const Configuration& before, const Configuration& after) {
    return before.*Section.*Member == after.*Section.*Member;
}

/// Lines that were added or removed change the devices only.
template <auto Member>
bool equalInLines(const Configuration& before, const Configuration& after) {
    const auto areEqual = [](const Configuration::Line& one, const Configuration::Line& other) {
        return one.*Member == other.*Member;
    };
    if (before.lines.size() != after.lines.size()) {
        if constexpr (std::is_same_v<decltype(Member), decltype(&Configuration::Line::device)>) {
            return Member != &Configuration::Line::device;
        }
        return true;
    }
    return std::equal(before.lines.begin(), before.lines.end(), after.lines.begin(), areEqual);
}

bool equalFurtherSwitches(const Configuration& before, const Configuration& after) {
    return before.moreSwitches == after.moreSwitches;
}

using C = Configuration;

constexpr Key kKeys[] = {
    {"line.device", &equalInLines<&C::Line::device>},
    {"line.name", &equalInLines<&C::Line::name>},
    {"line.switch", &equalInLines<&C::Line::switchName>},
    {"line.shared", &equalInLines<&C::Line::shared>},
    {"line.bluetooth", &equalInLines<&C::Line::bluetooth>},
    {"line.never-log", &equalInLines<&C::Line::neverLog>},
    {"line.management", &equalInLines<&C::Line::management>},
    {"line.keep-days", &equalInLines<&C::Line::keep>},
    {"switch", &equalFurtherSwitches},
    {"switch.name", &equal<&C::callSwitch, &C::Switch::name>},
    {"switch.host", &equal<&C::callSwitch, &C::Switch::host>},
    {"switch.port", &equal<&C::callSwitch, &C::Switch::port>},
    {"switch.edition", &equal<&C::callSwitch, &C::Switch::edition>},
    {"switch.session", &equal<&C::callSwitch, &C::Switch::session>},
    {"switch.send-filters", &equal<&C::callSwitch, &C::Switch::sendFilters>},
    {"switch.tls", &equal<&C::callSwitch, &C::Switch::tls>},
    {"switch.tls-*", &equal<&C::callSwitch, &C::Switch::trust>},
    {"switch.reconnect-max-s", &equal<&C::callSwitch, &C::Switch::reconnectMax>},
    {"switch.call-max-hours", &equal<&C::callSwitch, &C::Switch::callMax>},
    {"api.metrics-per-line", &equal<&C::api, &C::Api::metricsPerLine>},
    {"api.listen", &equal<&C::api, &C::Api::listen>},
    {"api.auth", &equal<&C::api, &C::Api::auth>},
    {"api.tls-*", &equal<&C::api, &C::Api::tls>},
    {"api.public-url", &equal<&C::api, &C::Api::publicUrl>},
    {"api.allowed-origins", &equal<&C::api, &C::Api::allowedOrigins>},
    {"data.store", &equal<&C::data, &C::Data::store>},
    {"data.keep-days", &equal<&C::data, &C::Data::keep>},
    {"digits.region", &equal<&C::digits, &C::Digits::region>},
    {"digits.feature-access-codes", &equal<&C::digits, &C::Digits::featureAccessCodes>},
    {"digits.outside-line", &equal<&C::digits, &C::Digits::outsideLine>},
    {"digits.dial", &equal<&C::digits, &C::Digits::dialInternational>},
};

void addManagement(std::set<std::string>& names, const Configuration::Keys& from,
                   const Configuration::Keys& other) {
    for (const auto& [key, value] : from) {
        const auto found = other.find(key);
        if (found == other.end() || found->second != value) {
            names.insert("management." + key);
        }
    }
}

}  // namespace

std::vector<std::string> changesThatNeedRestart(const Configuration& before, const Configuration& after) {
    std::vector<std::string> changed;
    for (const Key& key : kKeys) {
        if (!key.isEqual(before, after)) {
            changed.emplace_back(key.name);
        }
    }
    if (before.webhooks != after.webhooks) {
        changed.emplace_back("webhook");
    }
    std::set<std::string> management;
    addManagement(management, before.management, after.management);
    addManagement(management, after.management, before.management);
    changed.insert(changed.end(), management.begin(), management.end());
    return changed;
}

}  // namespace host
