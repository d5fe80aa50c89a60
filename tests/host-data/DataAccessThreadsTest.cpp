#include <thread>

#include "tests/host-data/DataAccessFixture.h"

namespace {

using journaltest::call;
using journaltest::Client;
using testing::SizeIs;

using DataAccessThreads = journaltest::DataAccessFixture;

// Four threads file, merge and delete items of their own while a fifth reads: each finds exactly its own at the end.
TEST_F(DataAccessThreads, WorkSideBySideWithoutLosingARow) {
    constexpr int kThreads = 4;
    constexpr int kItems = 25;
    std::atomic<bool> done{false};
    std::atomic<int> failures{0};
    std::vector<std::thread> writers;
    for (int thread = 0; thread < kThreads; ++thread) {
        writers.emplace_back([this, thread, &failures] {
            Client client(*m_access);
            for (int item = 0; item < kItems; ++item) {
                auto kept = call<MissedCallItem>(std::to_string(thread), "05:00:00");
                auto deleted = call<DialledCallItem>(std::to_string(thread), "05:00:00");
                client.file(kept);
                client.file(deleted);
                kept.addCallInfoToList({});
                const std::string uniqueId = kept.getUniqueId();
                client.file(kept);
                failures += kept.getUniqueId() != uniqueId ? 1 : 0;
                failures += client.remove<DialledCallItem>({deleted}) == "failed" ? 1 : 0;
            }
        });
    }
    std::thread reader([this, &done, &failures] {
        Client client(*m_access);
        while (!done) {
            for (const MissedCallItem& item : client.read<MissedCallItem>()) {
                failures += item.getMissedCallInfoList().empty() ? 1 : 0;
            }
            failures += m_access->healthy() ? 0 : 1;
        }
    });
    for (std::thread& each : writers) {
        each.join();
    }
    done = true;
    reader.join();
    EXPECT_EQ(failures, 0);
    EXPECT_THAT(journal().read<MissedCallItem>(), SizeIs(kThreads * kItems));
    EXPECT_THAT(journal().read<DialledCallItem>(), SizeIs(0));
    EXPECT_EQ(m_database.number("SELECT count(*) FROM occurrence"), 2 * kThreads * kItems);
}

}  // namespace
