#include "host/remote/RemoteFrame.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace host {
namespace {

using Kind = RemoteFrame::Kind;
using namespace std::string_literals;

TEST(RemoteFrame, StandsOnTheWireAsTheDocumentationShows) {
    EXPECT_EQ(RemoteFrame::encode(Kind::eRequest, 1, "<r><Method>2</Method></r>"),
              "\0\0\0\x1eQ\0\0\0\x01<r><Method>2</Method></r>"s);
    EXPECT_EQ(RemoteFrame::encode(Kind::eRequest, 0x01020304, "<a/>"), "\0\0\0\x09Q\x01\x02\x03\x04<a/>"s);
    EXPECT_EQ(RemoteFrame::encode(Kind::eAnswer, 7, ""),
              "\0\0\0\x05"
              "A\0\0\0\x07"s);
    const std::string longer = RemoteFrame::encode(Kind::eNotification, 0, std::string(0x012345, 'x'));
    EXPECT_EQ(longer.substr(0, 9), "\0\x01\x23\x4AN\0\0\0\0"s);
}

TEST(RemoteFrame, TakesLengthsThatAFrameCanHave) {
    struct Row {
        std::array<char, 4> bytes;
        std::optional<std::size_t> length;
    };
    const std::vector<Row> rows{
        {{0, 0, 0, 0}, std::nullopt},
        {{0, 0, 0, 4}, std::nullopt},
        {{0, 0, 0, 5}, 5},
        {{0, 0, 1, 0}, 256},
        {{1, 0, 0, 5}, RemoteFrame::kMaxTextBytes + 5},
        {{1, 0, 0, 6}, std::nullopt},
        {{-1, -1, -1, -1}, std::nullopt},
        {{'G', 'E', 'T', ' '}, std::nullopt},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(RemoteFrame::readLength(row.bytes), row.length);
    }
}

TEST(RemoteFrame, ReadsBackWhatItWrote) {
    for (const Kind kind : {Kind::eRequest, Kind::eAnswer, Kind::eNotification}) {
        const std::string text = "M\xFC\0ller"s;
        const auto frame = RemoteFrame::readBody(RemoteFrame::encode(kind, 0xFFEEDDCC, text).substr(4));
        ASSERT_TRUE(frame);
        EXPECT_EQ(frame->kind, kind);
        EXPECT_EQ(frame->id, 0xFFEEDDCC);
        EXPECT_EQ(frame->text, text);
    }
}

TEST(RemoteFrame, RefusesABodyThatIsNone) {
    for (const std::string& body : {""s, "Q"s, "Q\0\0\0"s, "X\0\0\0\1text"s, "q\0\0\0\1text"s}) {
        EXPECT_FALSE(RemoteFrame::readBody(body)) << body;
    }
}

}  // namespace
}  // namespace host
