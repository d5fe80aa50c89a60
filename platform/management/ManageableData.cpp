#include "platform/management/ManageableData.h"

#include <algorithm>

void ManageableData::setRootId(const std::string& key, LocalMgmtIfc* /*source*/) {
    if (std::find(m_rootIds.begin(), m_rootIds.end(), key) == m_rootIds.end()) {
        m_rootIds.push_back(key);
    }
}

const DataNode* ManageableData::interogate(const std::string& rootId, const std::string& name) const {
    const auto found = m_values.find({rootId, name});
    return found == m_values.end() ? nullptr : &found->second;
}

void ManageableData::populate(const std::string& rootId, const std::string& name, const std::string& value) {
    setRootId(rootId, nullptr);
    m_values.insert_or_assign({rootId, name}, DataNode(value));
}
