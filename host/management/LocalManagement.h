#pragma once

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

/// The phone's settings of one line, registered as "LocalMgmtIfc". Two kinds of keys live side by side:
///
///  - The phone's own keys ("system-identifier"): first values from the configuration; what `write` changes is kept in
///    the database and wins over them from then on. Values of the command line win over both until `write` changes
///    the key.
///  - Keys that an agent serves ("call-log-enabled" of "JournalMgmtId"): the agent keeps them. Whoever wants to read or
///    change them asks the agent through `getAgentData` and `setAgentData`. What the agent publishes can be read and
///    observed like a key of the phone; `write` refuses it.
///
/// The road of a change: it is stored, becomes the value that `read` answers, and each observer is told on the line's
/// strand, in the order of the changes. A `write` or `publish` that does not change a value tells nobody.
///
/// Threads: any thread may call any operation, an agent from inside its own operations included. No agent is called
/// while a lock is held here, and none from inside the operations of `LocalMgmtIfc`.
///
/// Lifetime: agents are borrowed. Once `unregisterAgent` has returned no call reaches the agent any more; it waits
/// for calls that other threads are making just then. Notifications that are still posted when the management is
/// destroyed vanish.
class LocalManagement final : public Executable, public LocalMgmtIfc {
public:
    /// Runs a function on the line's strand, later and in order; never inside the call.
    using Post = std::function<void(std::function<void()>)>;
    using Keys = std::map<std::string, std::string>;
    using KnownKeys = std::map<std::string, std::optional<std::string>>;

    /// `database` is borrowed and outlives the management. Throws `DatabaseError` when the stored values cannot be read.
    LocalManagement(Database& database, std::string line, const Keys& firstValues, const Keys& overrides,
                    Post post);
    ~LocalManagement() override;

    // LocalMgmtIfc

    /// False when another agent has the identifier.
    bool registerAgent(const std::string& identifier, MgmtAgentIfc& agent, int version) override;
    void unregisterAgent(MgmtAgentIfc& agent) override;
    /// Every key can be observed, also one that has no value yet, and before the agent is registered. Asking again
    /// changes nothing.
    bool observe(const std::string& tag, MgmtAgentIfc& agent) override;
    bool read(ManageableData& data) override;
    /// All values or none are stored. Refused with a reason: a key without a value or served by an agent, a name that
    /// is not 1 to 100 printable ASCII characters without blanks, a value beyond 4,096 bytes, a database that fails.
    bool write(ManageableData& data) override;
    void publish(const ManageableData& data) override;

    // For those who serve people: the HTTP face, remote clients.

    /// Hands the values to the agent of that identifier on the calling thread; false, and reject reasons, when the agent
    /// refuses one or there is no such agent.
    [[nodiscard]] bool setAgentData(const std::string& identifier, ManageableData& data);
    /// Lets the agent of that identifier fill the values in; false when there is no such agent or a key is not its own.
    [[nodiscard]] bool getAgentData(const std::string& identifier, ManageableData& data);

    /// The phone's own keys with their values, and those that agents have published.
    [[nodiscard]] Keys values() const;
    /// Those, and every other key that an agent observes, without a value.
    [[nodiscard]] KnownKeys knownKeys() const;

private:
    using Handle = std::shared_ptr<AgentHandle>;
    using Change = std::pair<std::string, std::string>;

    [[nodiscard]] Handle handleOf(MgmtAgentIfc& agent);
    [[nodiscard]] Handle handleOf(const std::string& identifier) const;
    [[nodiscard]] bool callAgent(const std::string& identifier, ManageableData& data,
                                 bool (MgmtAgentIfc::*operation)(ManageableData&));
    [[nodiscard]] RejectReason objectionTo(const std::string& key, const ManageableData& data) const;
    [[nodiscard]] bool store(const std::vector<Change>& changes);
    /// Takes the changes over and posts a notification for each observer of each; m_changeMutex must be held.
    void apply(const std::vector<Change>& changes);

    // Constant after construction.
    Database& m_database;
    const std::string m_line;
    const Post m_post;

    /// Orders changes: held from the storing of a change to the posting of its notifications, and taken before m_mutex.
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
