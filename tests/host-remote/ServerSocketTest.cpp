#include "host/remote/ServerSocket.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "host/remote/RemoteError.h"
#include "host/remote/SocketAddress.h"
#include "tests/host-remote/RawClient.h"
#include "tests/support/TemporaryDirectory.h"

namespace host {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
namespace fs = std::filesystem;

std::string refusal(const fs::path& directory) {
    try {
        const ServerSocket socket(directory);
    } catch (const RemoteError& error) {
        return error.what();
    }
    return "no error";
}

/// What a server leaves behind that is killed: the file, and nobody who listens.
void leaveStaleSocket(const fs::path& directory) {
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    const sockaddr_un address = socketAddressIn(directory);
    ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(socket.get(), 1), 0);
}

TEST(ServerSocket, IsForItsOwnerOnlyAndTakesClients) {
    const TemporaryDirectory directory;
    const ServerSocket socket(directory.path());
    struct stat status {};
    ASSERT_EQ(::stat((directory.path() / "calljournal.sock").c_str(), &status), 0);
    EXPECT_TRUE(S_ISSOCK(status.st_mode));
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    EXPECT_NO_THROW(RawClient(directory.path()));
}

TEST(ServerSocket, RemovesItsFileAtTheEnd) {
    const TemporaryDirectory directory;
    { const ServerSocket socket(directory.path()); }
    EXPECT_TRUE(fs::is_empty(directory.path()));
}

TEST(ServerSocket, ReplacesTheSocketOfADeadServer) {
    const TemporaryDirectory directory;
    leaveStaleSocket(directory.path());
    EXPECT_THROW(RawClient(directory.path()), std::runtime_error);
    const ServerSocket socket(directory.path());
    EXPECT_NO_THROW(RawClient(directory.path()));
}

TEST(ServerSocket, RefusesTheDirectoryOfALivingServerAndLeavesThatAlone) {
    const TemporaryDirectory directory;
    const ServerSocket living(directory.path());
    EXPECT_THAT(refusal(directory.path()), AllOf(HasSubstr("a calljournal is already running at"),
                                                 HasSubstr("calljournal.sock"), HasSubstr("--data")));
    EXPECT_NO_THROW(RawClient(directory.path()));
}

TEST(ServerSocket, DoesNotRemoveAFileThatIsNoSocket) {
    const TemporaryDirectory directory;
    std::ofstream(directory.path() / "calljournal.sock") << "precious";
    EXPECT_THAT(refusal(directory.path()), HasSubstr("is in the way and is no socket"));
    EXPECT_EQ(fs::file_size(directory.path() / "calljournal.sock"), 8U);
}

TEST(ServerSocket, SaysWhatIsWrongWithTheDirectory) {
    const TemporaryDirectory directory;
    EXPECT_THAT(refusal(directory.path() / "absent"), HasSubstr("cannot use the data directory"));
    const fs::path deep = directory.path() / std::string(120, 'd');
    fs::create_directory(deep);
    EXPECT_THAT(refusal(deep), AllOf(HasSubstr("longer than the system allows"), HasSubstr("--data")));
}

}  // namespace
}  // namespace host
