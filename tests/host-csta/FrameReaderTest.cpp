#include "host/csta-wire/FrameReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace host {

void PrintTo(const Frame& frame, std::ostream* out) {
    *out << frame.invokeId << " " << testing::PrintToString(frame.xml);
}

}  // namespace host

namespace {

using host::encodeFrame;
using host::Frame;
using host::FrameReader;

/// A frame whose header claims so many bytes less than there are, as a peer does that counts characters.
std::string frame(int invokeId, std::string_view xml, std::size_t missing = 0) {
    std::string bytes = encodeFrame(invokeId, xml).value();
    const std::size_t length = bytes.size() - missing;
    bytes[2] = static_cast<char>(static_cast<unsigned char>(length / 256));
    bytes[3] = static_cast<char>(static_cast<unsigned char>(length % 256));
    return bytes;
}

std::string patched(std::string bytes, std::size_t at, char value) {
    bytes[at] = value;
    return bytes;
}

/// The frames of a stream that comes in pieces of so many bytes; `faulty` is whether anything was reported.
std::vector<Frame> receive(std::string_view bytes, std::size_t piece, bool& faulty) {
    FrameReader reader;
    std::vector<Frame> frames;
    faulty = false;
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size()))) {
        reader.feed(bytes.substr(0, piece));
        while (std::optional<Frame> next = reader.next()) {
            frames.push_back(*next);
        }
        faulty = !reader.takeFaults().empty() || faulty;
    }
    return frames;
}

TEST(FrameReader, GivesTheSameFramesHoweverTheBytesAreSplit) {
    const std::string ann = "<E><name>Ann M\xC3\xBCller \xC3\x98\xC3\x98</name></E>";
    const std::string declared = "<?xml version='1.0'?>\n<A a='>'>x</A >\n";
    const std::string good = frame(2, "<SystemStatus/>");
    const Frame last{2, "<SystemStatus/>"};
    const std::string children = "<A><Ab>1</Ab><Ab>2</Ab></A>";
    const struct {
        const char* what;
        std::string bytes;
        std::vector<Frame> frames;
        bool faulty;
    } cases[] = {
        {"two in a row", frame(9999, "<B></B>") + good, {{9999, "<B></B>"}, last}, false},
        {"a declaration, blanks and a comment around the root",
         frame(7, declared) + frame(8, "<A/><!-- end -->") + frame(9, "<a:A />"),
         {{7, declared}, {8, "<A/><!-- end -->"}, {9, "<a:A />"}},
         false},
        {"another framing", patched(frame(1, "<A/>"), 0, '\1') + good, {last}, true},
        {"an invoke id that is no number", patched(frame(1, "<A/>"), 6, 'x') + good, {last}, true},
        {"a length below eight", frame(1, "<A/>", 5) + good, {last}, true},
        {"a frame without a text", frame(1, "") + good, {last}, true},
        {"a text that is no XML", frame(1, "hello") + good, {{1, "hello"}, last}, false},
        {"garbage with zero bytes ahead", std::string("ab\0\0\0zz\0\0", 9) + good, {last}, true},
        {"a byte order mark after garbage",
         "xy" + frame(2, "\xEF\xBB\xBF<A/>"),
         {{2, "\xEF\xBB\xBF<A/>"}},
         true},
        {"characters counted for bytes", frame(9999, ann, 3) + good, {{9999, ann}, last}, true},
        {"a tag cut whole", frame(9999, ann, 12) + good, {{9999, ann}, last}, true},
        {"cut, and nothing behind", frame(9999, ann, 3), {{9999, ann}}, true},
        {"cut twice in a row", frame(1, ann, 3) + frame(2, ann, 3), {{1, ann}, {2, ann}}, true},
        {"a child named like the root", frame(1, children, 15) + good, {{1, children}, last}, true},
        {"an element that is never closed", frame(1, "<A><b>") + good, {{1, "<A><b>"}, last}, false},
    };
    for (const auto& one : cases) {
        for (std::size_t piece = 1; piece <= one.bytes.size(); ++piece) {
            bool faulty = false;
            EXPECT_EQ(receive(one.bytes, piece, faulty), one.frames) << one.what << " by " << piece;
            EXPECT_TRUE(faulty == one.faulty || piece < one.bytes.size()) << one.what;
        }
    }
}

TEST(FrameReader, ReadsFramesWhoseLengthNeedsTheHighestBit) {
    for (const std::size_t size : {32760U, 32768U, 65527U}) {
        const std::string xml = "<A>" + std::string(size - 7, 'x') + "</A>";
        bool faulty = false;
        EXPECT_EQ(receive(frame(5, xml) + frame(6, "<B/>"), 70000, faulty),
                  (std::vector<Frame>{{5, xml}, {6, "<B/>"}}));
    }
}

TEST(FrameReader, GivesUpAStreamWithoutAnyFrame) {
    FrameReader reader;
    const std::string garbage(10000, '\1');
    std::size_t fed = 0;
    while (!reader.lost() && fed < 10 * FrameReader::kLostBytes) {
        reader.feed(garbage);
        fed += garbage.size();
        EXPECT_FALSE(reader.next());
        EXPECT_LE(reader.pendingBytes(), garbage.size());
    }
    EXPECT_TRUE(reader.lost());
    EXPECT_GT(fed, FrameReader::kLostBytes);
    reader.feed(frame(1, "<A/>"));
    EXPECT_FALSE(reader.next());
}

TEST(FrameReader, DoesNotWaitForEverForTheEndOfACutText) {
    FrameReader reader;
    reader.feed(frame(1, "<A><b>"));
    EXPECT_FALSE(reader.next());
    reader.feed(std::string(FrameReader::kTailBytes + 1, 'x'));
    EXPECT_EQ(reader.next(), (Frame{1, "<A><b>"}));
}

TEST(Frame, CountsBytesAndRefusesWhatNoHeaderCanSay) {
    EXPECT_EQ(encodeFrame(42, "<A>\xC3\xBC</A>"), std::string("\0\0\0\x11"
                                                              "0042<A>\xC3\xBC</A>",
                                                              17));
    EXPECT_FALSE(encodeFrame(1, std::string(Frame::kMaxXmlBytes + 1, 'x')));
    EXPECT_FALSE(encodeFrame(10000, "<A/>"));
    EXPECT_FALSE(encodeFrame(-1, "<A/>"));
}

}  // namespace
