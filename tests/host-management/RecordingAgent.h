#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/management/ManageableData.h"
#include "platform/management/MgmtAgentIfc.h"

namespace journaltest {

/// An agent that notes what it is told, "key=value", and answers as a test wants. One thread at a time.
class RecordingAgent final : public MgmtAgentIfc {
public:
    bool setData(ManageableData& data) override {
        calls.push_back("set " + textOf(data));
        if (!reason.empty()) {
            data.addRejectReason(data.getRootId(), reason);
        }
        run();
        return reason.empty();
    }
    bool getData(ManageableData& data) override {
        calls.push_back("get " + data.getRootId());
        data.populate(data.getRootId(), data.getRootId(), "served");
        return true;
    }
    void manageableDataChanged(ManageableData& data) override {
        calls.push_back(textOf(data));
        run();
    }
    bool resetUserData() override {
        calls.emplace_back("reset");
        return true;
    }

    std::vector<std::string> calls;
    /// What `setData` refuses with; empty: it accepts.
    RejectReason reason;
    /// Runs inside the agent's calls.
    std::function<void()> during = [] {};

private:
    /// What runs may replace itself.
    void run() const {
        const std::function<void()> now = during;
        now();
    }
    static std::string textOf(const ManageableData& data) {
        const DataNode* const node = data.interogate(data.getRootId());
        return data.getRootId() + '=' + (node == nullptr ? "?" : node->getValue());
    }
};

}  // namespace journaltest
