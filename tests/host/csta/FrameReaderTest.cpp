#include "host/csta-wire/FrameReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace {

using host::encodeFrame;
using host::Frame;
using host::FrameReader;
using namespace std::string_literals;

/// A frame whose header claims so many bytes less than there are, as a peer does that counts characters; more
/// if the number is negative.
std::string frame(int invokeId, std::string_view xml, int missing = 0) {
    std::string bytes = encodeFrame(invokeId, xml).value();
    const std::size_t length = bytes.size() - static_cast<std::size_t>(missing);
    bytes[2] = static_cast<char>(static_cast<unsigned char>(length / 256));
    bytes[3] = static_cast<char>(static_cast<unsigned char>(length % 256));
    return bytes;
}

/// The frames of a stream that comes in pieces of so many bytes, "9999 <A/> 2 <B/> "; "!" at the end when
/// anything was reported of the last piece.
std::string receive(std::string_view bytes, std::size_t piece) {
    FrameReader reader;
    std::string frames;
    bool faulty = false;
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size()))) {
        reader.feed(bytes.substr(0, piece));
        while (std::optional<Frame> next = reader.next()) {
            frames += std::to_string(next->invokeId) + " " + next->xml + " ";
        }
        faulty = !reader.takeFaults().empty();
    }
    return frames + (faulty ? "!" : "");
}

TEST(FrameReader, ReturnsTheSameFramesForEverySegmentLength) {
    const std::string ann = "<E><name>Ann M\xC3\xBCller \xC3\x98\xC3\x98</name></E>";
    const std::string good = frame(2, "<B/>");
    const std::string children = "<A><Ab>1</Ab><Ab>2</Ab></A>";
    const struct {
        const char* what;
        std::string bytes;
        std::string frames;
    } cases[] = {
        {"a declaration, blanks and a comment around the root",
         frame(7, "<?xml version='1.0'?>\n<A a='>'>x</A >\n") + frame(8, "<A/><!-- end -->") + good,
         "7 <?xml version='1.0'?>\n<A a='>'>x</A >\n 8 <A/><!-- end --> 2 <B/> "},
        {"another framing", "\1\0\0\f0001<A/>"s + good, "2 <B/> !"},
        {"an invoke id that is no number", "\0\0\0\f00x1<A/>"s + good, "2 <B/> !"},
        {"a length below eight", frame(1, "<A/>", 5) + good, "2 <B/> !"},
        {"a frame without a text", frame(1, "") + good, "2 <B/> !"},
        {"garbage with zero bytes ahead", "ab\0\0\0zz\0\0"s + good, "2 <B/> !"},
        {"a byte order mark after garbage", "xy" + frame(2, "\xEF\xBB\xBF<A/>"), "2 \xEF\xBB\xBF<A/> !"},
        {"a tag cut whole", frame(9999, ann, 12) + good, "9999 " + ann + " 2 <B/> !"},
        {"cut twice in a row", frame(1, ann, 3) + frame(2, ann, 3), "1 " + ann + " 2 " + ann + " !"},
        {"a child named like the root", frame(1, children, 15) + good, "1 " + children + " 2 <B/> !"},
        {"a length too large by a part of a header", frame(1, ann, -5) + good, "1 " + ann + " 2 <B/> !"},
        {"a header only", frame(1, "", -5) + good, "2 <B/> !"},
        {"a length too large by a frame", frame(1, ann, -80) + good + good + frame(3, ann),
         "1 " + ann + " 2 <B/> 2 <B/> 3 " + ann + " !"},
        {"zero bytes and line ends after the frames", frame(1, ann + "\0"s) + good + "\n\0\0"s + good + "\0"s,
         "1 " + ann + " 2 <B/> 2 <B/> !"},
        {"a frame that is cut short", frame(1, ann).substr(0, 30) + good + frame(3, ann),
         "1 " + ann.substr(0, 22) + " 2 <B/> 3 " + ann + " !"},
        {"a frame that is cut short by less than a header", frame(1, ann.substr(0, 22), -5) + good + good,
         "1 " + ann.substr(0, 22) + " 2 <B/> 2 <B/> !"},
        {"a zero byte in a text", frame(1, "<A>\0</A>"s) + good, "1 <A>\0</A> 2 <B/> "s},
        {"an element that is never closed", frame(1, "<A><b>") + good, "1 <A><b> 2 <B/> "},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(receive(one.bytes, one.bytes.size()), one.frames) << one.what;
        const std::string frames = one.frames.substr(0, one.frames.find_last_not_of('!') + 1);
        for (std::size_t piece = 1; piece < one.bytes.size(); ++piece) {
            EXPECT_EQ(receive(one.bytes, piece).substr(0, frames.size()), frames)
                << one.what << " by " << piece;
        }
    }
    // The length needs the highest bit.
    const std::string large = "<A>" + std::string(65520, 'x') + "</A>";
    EXPECT_EQ(receive(frame(5, large) + good, 70000), "5 " + large + " 2 <B/> ");
}

TEST(FrameReader, GivesUpAStreamWithoutFrames) {
    FrameReader reader;
    for (std::size_t fed = 0; fed <= FrameReader::kLostBytes; fed += 10000) {
        EXPECT_FALSE(reader.isLost());
        reader.feed(std::string(10000, '\1'));
        EXPECT_FALSE(reader.next());
        EXPECT_LE(reader.pendingBytes(), 10000U);
    }
    EXPECT_TRUE(reader.isLost());
    reader.feed(frame(1, "<A/>"));
    EXPECT_FALSE(reader.next());
}

TEST(FrameReader, ReturnsAFrameWhoseRestDoesNotComeIfItIsComplete) {
    FrameReader reader;
    reader.feed(frame(1, "<A></A>", -100));
    EXPECT_FALSE(reader.next());
    EXPECT_EQ(reader.takeOverdue().value_or(Frame()), (Frame{1, "<A></A>"}));
    const std::string xml = R"(<?xml version="1.0"?><!-- <B></B> --><A></A>)";
    for (std::size_t split = 8; split < 8 + xml.size(); ++split) {
        reader.feed(frame(2, xml).substr(0, split));
        EXPECT_FALSE(reader.next() || reader.takeOverdue()) << split;
        reader.feed(frame(2, xml).substr(split));
        EXPECT_EQ(reader.next().value_or(Frame()), (Frame{2, xml})) << split;
    }
    reader.feed(frame(3, "<A/>\0\n"s));
    EXPECT_EQ(reader.next().value_or(Frame()), (Frame{3, "<A/>"}));
    EXPECT_EQ(reader.pendingBytes(), 0U);  // no part of a message
}

TEST(FrameReader, LimitsTheSearchForTheEndOfTruncatedXml) {
    const std::string cut = frame(1, "<A><b>");
    EXPECT_EQ(receive(cut, 100), "");
    EXPECT_EQ(receive(cut + std::string(FrameReader::kTailBytes + 1, 'x'), cut.size()).substr(0, 9),
              "1 <A><b> ");
}

TEST(Frame, CountsBytesAndRefusesInvalidLengthsAndIds) {
    EXPECT_EQ(encodeFrame(42, "<A>\xC3\xBC</A>"), "\0\0\0\0210042<A>\xC3\xBC</A>"s);
    EXPECT_FALSE(encodeFrame(1, std::string(Frame::kMaxXmlBytes + 1, 'x')));
    EXPECT_FALSE(encodeFrame(10000, "<A/>"));
    EXPECT_FALSE(encodeFrame(-1, "<A/>"));
}

}  // namespace
