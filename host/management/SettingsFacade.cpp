#include "host/management/SettingsFacade.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "host/limits/TextLimits.h"
#include "host/management/LocalManagement.h"
#include "host/management/SettingRules.h"
#include "platform/management/ManageableData.h"

namespace host {
namespace {

constexpr const char* kJournalAgent = "JournalMgmtId";
constexpr std::array<std::string_view, 4> kJournalKeys{"call-log-enabled", "clear-calllog",
                                                       "delete-missed-when-called", "missed-logging"};
/// Keys that the journal reads without observing them.
constexpr std::array<std::string_view, 3> kUnobservedKeys{"mac-addr", "software-type", "voice-mail-e164"};

bool isOfJournal(std::string_view key) {
    return std::find(kJournalKeys.begin(), kJournalKeys.end(), key) != kJournalKeys.end();
}

/// Returns the end of a refusal, which names the accepted values.
std::string hint(const std::string& key) {
    const std::string_view values = acceptedValues(key);
    return values.empty() ? std::string() : ": it takes " + std::string(values);
}

LocalManagement::KnownKeys keysOfPhone(const LocalManagement& management) {
    LocalManagement::KnownKeys known = management.knownKeys();
    for (const std::string_view key : kUnobservedKeys) {
        known.try_emplace(std::string(key));
    }
    return known;
}

}  // namespace

std::vector<Setting> SettingsFacade::all() const {
    std::vector<Setting> settings;
    settings.reserve(std::size(kJournalKeys));
    for (const std::string_view key : kJournalKeys) {
        settings.push_back({std::string(key), true, journalValue(std::string(key))});
    }
    for (const auto& [key, value] : keysOfPhone(m_management)) {
        if (!isOfJournal(key)) {
            settings.push_back({key, false, value});
        }
    }
    return settings;
}

std::optional<Setting> SettingsFacade::find(const std::string& key) const {
    if (isOfJournal(key)) {
        return Setting{key, true, journalValue(key)};
    }
    const LocalManagement::KnownKeys known = keysOfPhone(m_management);
    const auto found = known.find(key);
    return found == known.end() ? std::nullopt : std::optional(Setting{key, false, found->second});
}

RejectReason SettingsFacade::set(const std::string& key, const std::string& value) {
    if (!isOfJournal(key) && !find(key)) {
        return {eRejectDataInvalid, "There is no setting " + key};
    }
    // The journal refuses invalid values for its own keys, except for "clear-calllog", where it ignores them.
    if ((!isOfJournal(key) || key == "clear-calllog") && !isAccepted(key, value)) {
        return {eRejectDataInvalid, "The value for " + key + " is not accepted" + hint(key)};
    }
    if (value.size() > limits::kTextBytes) {
        return {eRejectDataInvalid, limits::tooLong("The value for " + key, limits::kTextBytes)};
    }
    ManageableData data;
    data.populate(key, key, value);
    const bool done =
        isOfJournal(key) ? m_management.setAgentData(kJournalAgent, data) : m_management.write(data);
    if (done) {
        return {};
    }
    const auto reason = data.getRejectReasons().find(key);
    if (reason != data.getRejectReasons().end() && reason->second.code == eRejectValueNotChanged) {
        return {};
    }
    if (reason == data.getRejectReasons().end() || reason->second.empty()) {
        // An agent may refuse without a reason: the value is invalid or cannot be stored.
        return {eRejectDataInvalid, "The value for " + key + " is not accepted"};
    }
    return {reason->second.code,
            reason->second.text + (reason->second.code == eRejectDataInvalid ? hint(key) : std::string())};
}

std::optional<std::string> SettingsFacade::journalValue(const std::string& key) const {
    ManageableData data;
    data.setRootId(key, nullptr);
    const bool served = m_management.getAgentData(kJournalAgent, data);
    const DataNode* const node = data.interogate(key);
    return served && node != nullptr ? std::optional(node->getValue()) : std::nullopt;
}

}  // namespace host
