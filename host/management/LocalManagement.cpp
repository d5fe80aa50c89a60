#include "host/management/LocalManagement.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

#include "host/data/SettingRows.h"
#include "host/database/Database.h"
#include "host/management/AgentHandle.h"
#include "host/management/SettingRules.h"
#include "platform/clock/PhoneZone.h"
#include "platform/logging/Logging.h"
#include "platform/management/ManageableData.h"
#include "platform/management/MgmtAgentIfc.h"

namespace host {
namespace {

constexpr std::size_t kLongestKey = 100;
constexpr std::size_t kLongestValue = 4096;

bool isKey(const std::string& text) {
    return !text.empty() && text.size() <= kLongestKey &&
           std::all_of(text.begin(), text.end(), [](char each) { return each > ' ' && each < '\x7f'; });
}

/// False, with a warning, for a value that a former version has stored and this one does not accept.
bool isValid(const std::pair<std::string, std::string>& stored) {
    const bool valid = isAccepted(stored.first, stored.second);
    if (!valid) {
        logAppUni("Settings", __FILE_NAME__, 3, __LINE__,
                  "the stored value \"%s\" of %s has no effect: it takes %s", stored.second.c_str(),
                  stored.first.c_str(), std::string(acceptedValues(stored.first)).c_str());
    }
    return valid;
}

void rejectAll(ManageableData& data, const std::string& why) {
    for (const std::string& key : data.getRootIds()) {
        data.addRejectReason(key, {eRejectDataInvalid, why});
    }
}

}  // namespace

LocalManagement::LocalManagement(Database& database, std::string line, const Keys& firstValues,
                                 const Keys& overrides, Post post)
    : m_database(database), m_line(std::move(line)), m_post(std::move(post)), m_values(overrides) {
    std::vector<Change> stored;
    const bool done = m_database.read("reading the management values", [&](Database::Session& session) {
        stored = SettingRows(session, SettingRows::Table::eManagementValues, m_line).read();
    });
    if (!done) {
        throw DatabaseError(m_database.file().string() +
                            ": the management values cannot be read; see the log");
    }
    std::erase_if(stored, [](const Change& value) { return !isValid(value); });
    // `insert` keeps the values that the map already has.
    m_values.insert(stored.begin(), stored.end());
    m_values.insert(firstValues.begin(), firstValues.end());
}

LocalManagement::~LocalManagement() {
    for (const auto& [agent, handle] : m_handles) {
        handle->close();
    }
}

bool LocalManagement::registerAgent(const std::string& identifier, MgmtAgentIfc& agent, int /*version*/) {
    const std::lock_guard lock(m_mutex);
    return m_agents.try_emplace(identifier, handleOf(agent)).first->second == handleOf(agent);
}

void LocalManagement::unregisterAgent(MgmtAgentIfc& agent) {
    Handle handle;
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_handles.find(&agent);
        if (found == m_handles.end()) {
            return;
        }
        handle = found->second;
        m_handles.erase(found);
        std::erase_if(m_agents, [&handle](const auto& registered) { return registered.second == handle; });
        for (auto& [key, observers] : m_observers) {
            std::erase(observers, handle);
        }
    }
    handle->close();
}

bool LocalManagement::observe(const std::string& tag, MgmtAgentIfc& agent) {
    if (!isKey(tag)) {
        return false;
    }
    const std::lock_guard lock(m_mutex);
    const Handle handle = handleOf(agent);
    std::vector<Handle>& observers = m_observers[tag];
    if (std::find(observers.begin(), observers.end(), handle) == observers.end()) {
        observers.push_back(handle);
    }
    return true;
}

bool LocalManagement::read(ManageableData& data) {
    const std::lock_guard lock(m_mutex);
    bool complete = true;
    for (const std::string& key : std::vector<std::string>(data.getRootIds())) {
        const auto found = m_values.find(key);
        complete = complete && found != m_values.end();
        if (found != m_values.end()) {
            data.populate(key, key, found->second);
        }
    }
    return complete;
}

bool LocalManagement::write(ManageableData& data) {
    const std::lock_guard order(m_changeMutex);
    std::vector<Change> changes;
    bool accepted = true;
    for (const std::string& key : data.getRootIds()) {
        const RejectReason objection = objectionTo(key, data);
        if (!objection.empty()) {
            data.addRejectReason(key, objection);
            accepted = false;
        } else {
            changes.emplace_back(key, data.interogate(key)->getValue());
        }
    }
    if (accepted && !store(changes)) {
        rejectAll(data, "The value cannot be stored");
        accepted = false;
    }
    if (accepted) {
        apply(changes, Repeated::eNotify);
    }
    return accepted;
}

void LocalManagement::publish(const ManageableData& data) {
    const std::lock_guard order(m_changeMutex);
    std::vector<Change> changes;
    for (const std::string& key : data.getRootIds()) {
        if (const DataNode* const node = data.interogate(key)) {
            changes.emplace_back(key, node->getValue());
        }
    }
    {
        const std::lock_guard lock(m_mutex);
        for (const Change& change : changes) {
            m_publishedKeys.insert(change.first);
        }
    }
    apply(changes, Repeated::eIgnore);
}

void LocalManagement::announceValues() {
    const std::lock_guard order(m_changeMutex);
    std::vector<Notification> notifications;
    {
        const std::lock_guard lock(m_mutex);
        for (const auto& value : m_values) {
            addNotifications(value, notifications);
        }
    }
    post(notifications);
}

bool LocalManagement::setAgentData(const std::string& identifier, ManageableData& data) {
    return callAgent(identifier, data, &MgmtAgentIfc::setData);
}

bool LocalManagement::getAgentData(const std::string& identifier, ManageableData& data) {
    return callAgent(identifier, data, &MgmtAgentIfc::getData);
}

LocalManagement::Keys LocalManagement::values() const {
    const std::lock_guard lock(m_mutex);
    return m_values;
}

LocalManagement::KnownKeys LocalManagement::knownKeys() const {
    const std::lock_guard lock(m_mutex);
    KnownKeys known(m_values.begin(), m_values.end());
    for (const auto& [key, observers] : m_observers) {
        if (!observers.empty()) {
            known.try_emplace(key);
        }
    }
    return known;
}

LocalManagement::Handle LocalManagement::handleOf(MgmtAgentIfc& agent) {
    Handle& handle = m_handles[&agent];
    if (handle == nullptr) {
        handle = std::make_shared<AgentHandle>(agent);
    }
    return handle;
}

LocalManagement::Handle LocalManagement::handleOf(const std::string& identifier) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_agents.find(identifier);
    return found == m_agents.end() ? nullptr : found->second;
}

bool LocalManagement::callAgent(const std::string& identifier, ManageableData& data,
                                bool (MgmtAgentIfc::*operation)(ManageableData&)) {
    const Handle handle = handleOf(identifier);
    bool done = false;
    if (handle == nullptr || !handle->call([&](MgmtAgentIfc& agent) { done = (agent.*operation)(data); })) {
        rejectAll(data, "No agent serves " + identifier);
    }
    return done;
}

RejectReason LocalManagement::objectionTo(const std::string& key, const ManageableData& data) const {
    const DataNode* const node = data.interogate(key);
    if (!isKey(key)) {
        return {eRejectDataInvalid, "This is not a valid key"};
    }
    if (node == nullptr) {
        return {eRejectDataInvalid, "There is no value for " + key};
    }
    if (node->getValue().size() > kLongestValue) {
        return {eRejectDataInvalid, "The value for " + key + " is too long"};
    }
    const std::lock_guard lock(m_mutex);
    if (m_publishedKeys.contains(key)) {
        return {eRejectDataInvalid, key + " belongs to a service, which must be asked to change it"};
    }
    return {};
}

bool LocalManagement::store(const std::vector<Change>& changes) {
    return m_database.write("storing management values", [&](Database::Session& session) {
        SettingRows rows(session, SettingRows::Table::eManagementValues, m_line);
        for (const Change& change : changes) {
            rows.write(change);
        }
    });
}

void LocalManagement::apply(const std::vector<Change>& changes, Repeated repeated) {
    std::vector<Notification> notifications;
    {
        const std::lock_guard lock(m_mutex);
        for (const Change& change : changes) {
            const auto [value, added] = m_values.try_emplace(change.first, change.second);
            const bool unchanged = !added && value->second == change.second;
            if (!unchanged || repeated == Repeated::eNotify) {
                value->second = change.second;
                addNotifications(change, notifications);
            }
        }
    }
    post(notifications);
}

void LocalManagement::addNotifications(const Change& change, std::vector<Notification>& notifications) const {
    const auto observers = m_observers.find(change.first);
    if (observers != m_observers.end()) {
        for (const Handle& handle : observers->second) {
            notifications.emplace_back(handle, change);
        }
    }
}

void LocalManagement::post(const std::vector<Notification>& notifications) const {
    for (const Notification& notification : notifications) {
        m_post([notification] {
            const auto& [key, value] = notification.second;
            ManageableData data;
            data.populate(key, key, value);
            notification.first->call([&data](MgmtAgentIfc& agent) { agent.manageableDataChanged(data); });
        });
    }
}

std::chrono::minutes LocalManagement::aheadOfUtc() const {
    const Keys keys = values();
    const auto number = [&keys](const char* name) {
        const auto key = keys.find(name);
        int value = 0;
        if (key != keys.end()) {
            std::from_chars(key->second.data(), key->second.data() + key->second.size(), value);
        }
        return value;
    };
    const auto saving = keys.find("daylight-save");
    const bool saves = saving != keys.end() && saving->second == "true";
    return std::chrono::minutes(
        minutesAheadOfUtc(number("sntp-tz-offset"), saves ? number("daylight-save-minutes") : 0));
}

}  // namespace host
