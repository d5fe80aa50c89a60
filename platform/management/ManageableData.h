#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/management/RejectReasons.h"

class LocalMgmtIfc;

/// The value of one management key.
class DataNode {
public:
    explicit DataNode(std::string value = {}) : m_value(std::move(value)) {}
    [[nodiscard]] const std::string& getValue() const noexcept { return m_value; }

private:
    std::string m_value;
};

/// The management's record of keys, their values, and the reject reasons of refused keys. Keys keep the order
/// in which they were first named. A plain value without synchronisation.
class ManageableData {
public:
    /// The keys, in order.
    [[nodiscard]] const std::vector<std::string>& getRootIds() const noexcept { return m_rootIds; }
    /// The first key; empty if there is none.
    [[nodiscard]] std::string getRootId() const {
        return m_rootIds.empty() ? std::string() : m_rootIds.front();
    }
    /// Adds a key without a value, to be read. `source` is the management that will fill it, or null.
    void setRootId(const std::string& key, LocalMgmtIfc* source);

    /// The value of `key`, or null if it has none. Valid until the record changes.
    [[nodiscard]] const DataNode* interogate(const std::string& key) const { return interogate(key, key); }
    /// The value of the entry `name` below `rootId`, or null.
    [[nodiscard]] const DataNode* interogate(const std::string& rootId, const std::string& name) const;
    /// Sets the value of the entry `name` below `rootId`; a single-valued key has one entry, of its own name.
    void populate(const std::string& rootId, const std::string& name, const std::string& value);

    void addRejectReason(const std::string& key, const RejectReason& reason) { m_rejected[key] = reason; }
    [[nodiscard]] const std::map<std::string, RejectReason>& getRejectReasons() const noexcept {
        return m_rejected;
    }

private:
    std::vector<std::string> m_rootIds;
    std::map<std::pair<std::string, std::string>, DataNode> m_values;
    std::map<std::string, RejectReason> m_rejected;
};
