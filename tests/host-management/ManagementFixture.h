#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "host/management/LocalManagement.h"
#include "tests/host-data/TemporaryDatabase.h"
#include "tests/host-management/RecordingAgent.h"

namespace journaltest {

/// The management of line "2001", with a strand that runs when the test says so.
class ManagementFixture : public testing::Test {
protected:
    using Keys = host::LocalManagement::Keys;

    /// Starts the program anew on the database that there is.
    void start(const Keys& firstValues = {}, const Keys& overrides = {}) {
        m_management.reset();
        m_management = std::make_unique<host::LocalManagement>(
            *m_database, "2001", firstValues, overrides,
            [this](std::function<void()> work) { m_posted.push_back(std::move(work)); });
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
        ManageableData data;
        data.populate(key, key, value);
        return management().write(data);
    }
    void publish(const std::string& key, const std::string& value) {
        ManageableData data;
        data.populate(key, key, value);
        management().publish(data);
    }
    /// Runs what was posted, and what that posts.
    void runStrand() {
        while (!m_posted.empty()) {
            const auto work = std::move(m_posted.front());
            m_posted.pop_front();
            work();
        }
    }

    TemporaryDatabase m_database;
    std::deque<std::function<void()>> m_posted;
    std::unique_ptr<host::LocalManagement> m_management;
};

}  // namespace journaltest
