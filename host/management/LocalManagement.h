#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/framework/Executable.h"
#include "platform/management/LocalMgmtIfc.h"
#include "platform/management/RejectReasons.h"

namespace host {

class AgentHandle;
class Database;

/// The phone's settings of one line, registered as "LocalMgmtIfc". There are two kinds of keys:
///
///  - The phone's own keys ("system-identifier"). The configuration has their first values. `write` stores a
///    value in the database, where it overrides the first value. Values of the command line override both
///    until `write` changes the key.
///  - Keys that an agent serves ("call-log-enabled" of "JournalMgmtId"). The agent stores them;
///    `getAgentData` and `setAgentData` read and change them. Keys that the agent publishes can also be read
///    and observed like a key of the phone, but `write` refuses them.
///
/// The sequence of a change: it is stored in the database, `read` returns it, and each observer is notified
/// on the line's strand, in the order of the changes. A `write` notifies the observers even if the value is
/// the same, so that an order ("load everything") can be repeated; a `publish` only of a change.
///
/// Thread-safe. An agent may also call from inside its own operations. No agent is called while a lock is
/// held here or from inside the operations of `LocalMgmtIfc`.
///
/// Lifetime: an agent lives until `unregisterAgent` has returned, which waits for calls to the agent by other
/// threads. Afterwards no call reaches the agent. The destructor discards notifications that are posted but
/// not delivered.
class LocalManagement final : public Executable, public LocalMgmtIfc {
public:
    /// Posts work to the line's strand. Never runs it inside the call.
    using Post = std::function<void(std::function<void()>)>;
    using Keys = std::map<std::string, std::string>;
    using KnownKeys = std::map<std::string, std::optional<std::string>>;

    /// Throws `DatabaseError` if the stored values cannot be read. Requires: `database` outlives the
    /// management.
    LocalManagement(Database& database, std::string line, const Keys& firstValues, const Keys& overrides,
                    Post post);
    ~LocalManagement() override;

    // LocalMgmtIfc

    /// Returns false if another agent has the identifier.
    bool registerAgent(const std::string& identifier, MgmtAgentIfc& agent, int version) override;
    void unregisterAgent(MgmtAgentIfc& agent) override;
    /// Any key can be observed, even one without a value, and before the agent is registered. Repeated calls
    /// have no effect.
    bool observe(const std::string& tag, MgmtAgentIfc& agent) override;
    bool read(ManageableData& data) override;
    /// Stores all values or none. Adds a reject reason for a key without a value, a key that an agent serves,
    /// a name that is not 1 to 100 printable ASCII characters without blanks, a value of more than 4,096
    /// bytes, and a failed database.
    bool write(ManageableData& data) override;
    void publish(const ManageableData& data) override;

    // For the HTTP API and remote clients.

    /// Passes the values to the agent with that identifier, on the calling thread. Returns false and adds
    /// reject reasons if the agent refuses a value or there is no such agent.
    [[nodiscard]] bool setAgentData(const std::string& identifier, ManageableData& data);
    /// Gets the values from the agent with that identifier, on the calling thread. Returns false if there is
    /// no such agent or it does not serve a key.
    [[nodiscard]] bool getAgentData(const std::string& identifier, ManageableData& data);

    /// Notifies each observer of the values that its keys have. Call once the agents observe their keys, so
    /// that a value of an earlier run, of the configuration or of the command line has its effect.
    void announceValues();

    /// Returns the phone's own keys and those that agents have published, with their values.
    [[nodiscard]] Keys values() const;
    /// Returns the same keys, and every other key that an agent observes, without a value.
    [[nodiscard]] KnownKeys knownKeys() const;
    /// The time by which the phone's zone (docs/configuration.md) is ahead of UTC; the zone of the switch's
    /// local times.
    [[nodiscard]] std::chrono::minutes aheadOfUtc() const;

private:
    using Handle = std::shared_ptr<AgentHandle>;
    using Change = std::pair<std::string, std::string>;
    using Notification = std::pair<Handle, Change>;
    enum class Repeated { eNotify, eIgnore };

    [[nodiscard]] Handle handleOf(MgmtAgentIfc& agent);
    [[nodiscard]] Handle handleOf(const std::string& identifier) const;
    [[nodiscard]] bool callAgent(const std::string& identifier, ManageableData& data,
                                 bool (MgmtAgentIfc::*operation)(ManageableData&));
    [[nodiscard]] RejectReason objectionTo(const std::string& key, const ManageableData& data) const;
    [[nodiscard]] bool store(const std::vector<Change>& changes);
    /// Applies the changes and posts a notification for each observer of each. `repeated` decides on a change
    /// to the value that the key has. Requires: m_changeMutex is held.
    void apply(const std::vector<Change>& changes, Repeated repeated);
    /// Requires: m_mutex is held.
    void addNotifications(const Change& change, std::vector<Notification>& notifications) const;
    void post(const std::vector<Notification>& notifications) const;

    // Constant after construction.
    Database& m_database;
    const std::string m_line;
    const Post m_post;

    /// Orders changes: held from the storing of a change to the posting of its notifications. Lock order:
    /// before m_mutex.
    std::mutex m_changeMutex;

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    Keys m_values;
    std::set<std::string> m_publishedKeys;
    std::map<MgmtAgentIfc*, Handle> m_handles;
    std::map<std::string, Handle> m_agents;
    std::map<std::string, std::vector<Handle>> m_observers;
};

}  // namespace host
