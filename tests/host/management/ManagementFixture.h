#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/management/LocalManagement.h"
#include "platform/management/ManageableData.h"
#include "platform/management/MgmtAgentIfc.h"
#include "tests/support/TemporaryDatabase.h"

namespace journaltest {

/// Returns one key with its value.
inline ManageableData dataOf(const std::string& key, const std::string& value) {
    ManageableData data;
    data.populate(key, key, value);
    return data;
}

/// An agent that records its calls, "key=value", and runs `during` inside them. One thread at a time.
class RecordingAgent final : public MgmtAgentIfc {
public:
    bool setData(ManageableData& data) override {
        calls.push_back("set " + textOf(data));
        run();
        return true;
    }
    bool getData(ManageableData& data) override {
        data.populate(data.getRootId(), data.getRootId(), "served");
        return true;
    }
    void manageableDataChanged(ManageableData& data) override {
        calls.push_back(textOf(data));
        run();
    }
    bool resetUserData() override { return true; }

    std::vector<std::string> calls;
    /// Runs inside `setData` and `manageableDataChanged`.
    std::function<void()> during = [] {};

private:
    /// Copies the function, which may replace itself.
    void run() const {
        const std::function<void()> now = during;
        now();
    }
    static std::string textOf(const ManageableData& data) {
        return data.getRootId() + '=' + data.interogate(data.getRootId())->getValue();
    }
};

/// The management of line "2001", with a strand that runs on `runStrand` only.
class ManagementFixture : public testing::Test {
protected:
    using Keys = host::LocalManagement::Keys;

    /// Restarts the management on the same database.
    void start(const Keys& firstValues = {}, const Keys& overrides = {}) {
        m_management.reset();
        m_management =
            std::make_unique<host::LocalManagement>(*m_database, "2001", firstValues, overrides, m_post);
    }
    [[nodiscard]] host::LocalManagement& management() { return *m_management; }

    std::optional<std::string> valueOf(const std::string& key) {
        ManageableData data;
        data.setRootId(key, nullptr);
        const bool has = management().read(data);
        EXPECT_EQ(has, data.interogate(key) != nullptr);
        return has ? std::optional(data.interogate(key)->getValue()) : std::nullopt;
    }
    bool write(const std::string& key, const std::string& value) {
        ManageableData data = dataOf(key, value);
        return management().write(data);
    }
    void publish(const std::string& key, const std::string& value) {
        management().publish(dataOf(key, value));
    }
    /// Runs the posted work, and the work that it posts.
    void runStrand() {
        while (!m_posted.empty()) {
            const auto work = std::move(m_posted.front());
            m_posted.pop_front();
            work();
        }
    }

    TemporaryDatabase m_database;
    std::deque<std::function<void()>> m_posted;
    host::LocalManagement::Post m_post = [this](std::function<void()> work) {
        m_posted.push_back(std::move(work));
    };
    std::unique_ptr<host::LocalManagement> m_management;
};

}  // namespace journaltest
