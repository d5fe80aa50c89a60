#include "host/http/ConnectionTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using host::ConnectionTable;
using testing::ElementsAre;
using testing::IsEmpty;

/// Two trusted places, three anonymous ones, two of them for one address. Each step takes a second.
class ConnectionTableTest : public testing::Test {
protected:
    void accept(ConnectionTable::Id id, const std::string& address) {
        m_table.accepted(
            id, address, [this, id] { m_disconnected.push_back(id); }, now());
    }
    void request(ConnectionTable::Id id, bool isTrusted) { m_table.requested(id, isTrusted, now()); }
    void respond(ConnectionTable::Id id) { m_table.responded(id, now()); }
    /// The connections that were disconnected since the last call.
    std::vector<ConnectionTable::Id> disconnected() { return std::exchange(m_disconnected, {}); }

private:
    ConnectionTable::Clock::time_point now() { return m_now += std::chrono::seconds(1); }

    ConnectionTable::Clock::time_point m_now;
    std::vector<ConnectionTable::Id> m_disconnected;
    ConnectionTable m_table{{.trusted = 2, .anonymous = 3, .anonymousOfOneAddress = 2}};
};

TEST_F(ConnectionTableTest, DisconnectsTheAnonymousConnectionThatIsIdleForTheLongestTime) {
    accept(1, "a");
    accept(2, "a");
    request(1, false);
    respond(1);
    accept(3, "a");
    EXPECT_THAT(disconnected(), ElementsAre(2));  // of the same address
    accept(4, "b");
    EXPECT_THAT(disconnected(), IsEmpty());
    request(1, false);
    accept(5, "c");
    EXPECT_THAT(disconnected(), ElementsAre(3));  // of any address; the first one has a request
}

TEST_F(ConnectionTableTest, KeepsTrustedConnectionsFromAnonymousOnes) {
    for (const ConnectionTable::Id id : {1U, 2U}) {
        accept(id, "a");
        request(id, true);
        respond(id);
    }
    for (const ConnectionTable::Id id : {3U, 4U, 5U}) {
        accept(id, "a");
    }
    EXPECT_THAT(disconnected(), ElementsAre(3));
    request(1, true);
    request(4, true);  // the second one is idle
    EXPECT_THAT(disconnected(), ElementsAre(2));
    request(5, true);  // none is idle, so it stays anonymous
    respond(5);
    EXPECT_THAT(disconnected(), IsEmpty());
    accept(6, "a");
    accept(7, "a");
    EXPECT_THAT(disconnected(), ElementsAre(5));
}

}  // namespace
