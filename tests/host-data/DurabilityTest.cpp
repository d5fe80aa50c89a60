#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "tests/host-data/DataAccessFixture.h"

namespace {

using journaltest::call;
using journaltest::Client;
using journaltest::surnames;
using testing::ElementsAre;
using testing::IsEmpty;

/// A process of its own that works with the database and is killed in the very moment in which it has its answer.
class Durability : public testing::Test {
protected:
    /// Runs `work` in a child; returns when the child has sent the answer of the work and has been killed. "dead" when it
    /// died by itself.
    template <typename Work>
    std::string answerOfAKilledProcess(Work work) {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::pipe(ends), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            const std::string answer = answerOf(work) + '\n';
            static_cast<void>(!::write(ends[1], answer.data(), answer.size()));
            for (;;) {
                ::pause();
            }
        }
        ::close(ends[1]);
        std::string answer;
        char byte = '\0';
        while (::read(ends[0], &byte, 1) == 1 && byte != '\n') {
            answer += byte;
        }
        ::close(ends[0]);
        ::kill(child, SIGKILL);
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
        return answer;
    }

    [[nodiscard]] std::filesystem::path file() const { return m_directory.path() / "journal.db"; }

private:
    template <typename Work>
    std::string answerOf(Work work) {
        // Never destroyed: nothing may be brought into order behind the answer.
        auto* const database = new host::Database(file());
        auto* const access = new host::SqliteDataAccess(*database, "2001");
        Client journal(*access);
        return work(journal);
    }

    TemporaryDirectory m_directory;
};

TEST_F(Durability, AnItemThatWasAnsweredIsThereAfterTheProcessWasKilled) {
    const std::string uniqueId = answerOfAKilledProcess([](Client& journal) {
        journal.writeOne(call<MissedCallItem>("first", "05:00:00"));
        return journal.writeOne(call<MissedCallItem>("4711", "06:00:00"));
    });
    host::Database database(file());
    host::SqliteDataAccess access(database, "2001");
    const auto read = Client(access).read<MissedCallItem>();
    ASSERT_THAT(surnames(read), ElementsAre("4711", "first"));
    EXPECT_EQ(read.front().getUniqueId(), uniqueId);
    EXPECT_TRUE(occurrencesOf(read.front()) == occurrencesOf(call<MissedCallItem>("4711", "06:00:00")));
}

TEST_F(Durability, AnItemThatWasDeletedStaysAwayAfterTheProcessWasKilled) {
    const std::string answer = answerOfAKilledProcess([](Client& journal) {
        auto item = call<MissedCallItem>("4711", "06:00:00");
        journal.file(item);
        return std::to_string(journal.remove<MissedCallItem>({item}) != "failed");
    });
    ASSERT_EQ(answer, "1");
    host::Database database(file());
    host::SqliteDataAccess access(database, "2001");
    EXPECT_THAT(Client(access).read<MissedCallItem>(), IsEmpty());
}

}  // namespace
