#include "host/config/ConfigurationChanges.h"

#include <set>

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

template <auto Member>
bool equalInLine(const Configuration& before, const Configuration& after) {
    return before.lines.front().*Member == after.lines.front().*Member;
}

using C = Configuration;

constexpr Key kKeys[] = {
    {"line.device", &equalInLine<&C::Line::device>},
    {"line.shared", &equalInLine<&C::Line::shared>},
    {"line.bluetooth", &equalInLine<&C::Line::bluetooth>},
    {"line.never-log", &equalInLine<&C::Line::neverLog>},
    {"switch.host", &equal<&C::callSwitch, &C::Switch::host>},
    {"switch.port", &equal<&C::callSwitch, &C::Switch::port>},
    {"switch.edition", &equal<&C::callSwitch, &C::Switch::edition>},
    {"switch.session", &equal<&C::callSwitch, &C::Switch::session>},
    {"switch.send-filters", &equal<&C::callSwitch, &C::Switch::sendFilters>},
    {"switch.tls", &equal<&C::callSwitch, &C::Switch::tls>},
    {"switch.tls-*", &equal<&C::callSwitch, &C::Switch::trust>},
    {"switch.reconnect-max-s", &equal<&C::callSwitch, &C::Switch::reconnectMax>},
    {"switch.call-max-hours", &equal<&C::callSwitch, &C::Switch::callMax>},
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
