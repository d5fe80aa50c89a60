#include "host/framework/LibraryLoader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/TemporaryDirectory.h"

namespace host {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

// The tests of the program load the journal's own library.
TEST(LibraryLoader, NamesTheMissingFileOrFunction) {
    EXPECT_THAT([] { return LibraryLoader("/nowhere/libjournalservice.so").createJournalService(); },
                ThrowsMessage<LibraryError>(
                    HasSubstr("cannot load the service library /nowhere/libjournalservice.so")));
    EXPECT_THAT([] { return LibraryLoader("libm.so.6").createJournalService(); },
                ThrowsMessage<LibraryError>(HasSubstr("libm.so.6 does not export createJournalService:")));
}

TEST(LibraryLoader, LooksBesideTheProgramFirstAndThenInLib) {
    const TemporaryDirectory directory;
    const auto beside = directory.path() / "bin" / "libx.so";
    const auto inLib = directory.path() / "lib" / "libx.so";
    const auto locate = [&] { return LibraryLoader::locate("libx.so", beside.parent_path()); };
    EXPECT_THAT(locate,
                ThrowsMessage<LibraryError>(AllOf(HasSubstr(beside.string()), HasSubstr(inLib.string()))));
    for (const auto& file : {inLib, beside}) {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << "x";
        EXPECT_EQ(locate(), file);
    }
}

}  // namespace
}  // namespace host
