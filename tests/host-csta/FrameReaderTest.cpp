#include "host/csta-wire/FrameReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
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
using testing::ElementsAre;

std::string frame(int invokeId, std::string_view xml) {
    return encodeFrame(invokeId, xml).value();
}

/// A header whose fields the test chooses, in front of `xml`.
std::string header(char first, char second, std::size_t length, std::string_view invokeId,
                   std::string_view xml) {
    std::string bytes{first, second, static_cast<char>(static_cast<unsigned char>(length / 256)),
                      static_cast<char>(static_cast<unsigned char>(length % 256))};
    return bytes.append(invokeId).append(xml);
}

/// What a peer sends that counts characters and not bytes.
std::string shortened(int invokeId, std::string_view xml, std::size_t missing) {
    std::string bytes = frame(invokeId, xml);
    const std::size_t length = bytes.size() - missing;
    bytes[2] = static_cast<char>(static_cast<unsigned char>(length / 256));
    bytes[3] = static_cast<char>(static_cast<unsigned char>(length % 256));
    return bytes;
}

struct Received {
    std::vector<Frame> frames;
    std::vector<std::string> faults;
};

void drain(FrameReader& reader, Received& received) {
    while (std::optional<Frame> next = reader.next()) {
        received.frames.push_back(*next);
    }
    for (std::string& fault : reader.takeFaults()) {
        received.faults.push_back(std::move(fault));
    }
}

Received receive(const std::vector<std::string_view>& segments) {
    FrameReader reader;
    Received received;
    for (const std::string_view segment : segments) {
        reader.feed(segment);
        drain(reader, received);
    }
    return received;
}

struct StreamCase {
    const char* name;
    std::string bytes;
    std::vector<Frame> frames;
    bool faulty;
};

void PrintTo(const StreamCase& one, std::ostream* out) {
    *out << one.name;
}

std::vector<StreamCase> streamCases() {
    const std::string ann = "<E><name>Ann M\xC3\xBCller \xC3\x98\xC3\x98</name></E>";
    const std::string good = "<SystemStatus/>";
    return {
        {"three frames in one segment",
         frame(1, "<A/>") + frame(9999, "<B></B>") + frame(0, good),
         {{1, "<A/>"}, {9999, "<B></B>"}, {0, good}},
         false},
        {"a declaration, blanks and a comment around the root",
         frame(7, "<?xml version='1.0'?>\n<A a='>'>x</A >\n") + frame(8, "<A/><!-- end -->") +
             frame(9, "<a:A />"),
         {{7, "<?xml version='1.0'?>\n<A a='>'>x</A >\n"}, {8, "<A/><!-- end -->"}, {9, "<a:A />"}},
         false},
        {"a frame of another framing",
         header(1, 0, 8 + 4, "0001", "<A/>") + frame(2, good),
         {{2, good}},
         true},
        {"an invoke id that is no number",
         header(0, 0, 8 + 4, "00x1", "<A/>") + frame(2, good),
         {{2, good}},
         true},
        {"a length below eight", header(0, 0, 7, "0001", "<A/>") + frame(2, good), {{2, good}}, true},
        {"a frame without a text", frame(1, "") + frame(2, good), {{2, good}}, true},
        {"a text that is no XML", frame(1, "hello") + frame(2, good), {{1, "hello"}, {2, good}}, false},
        {"garbage with zero bytes ahead",
         std::string("ab\0\0\0zz\0\0", 9) + frame(2, good),
         {{2, good}},
         true},
        {"a byte order mark after garbage",
         "xy" + frame(2, "\xEF\xBB\xBF<A/>"),
         {{2, "\xEF\xBB\xBF<A/>"}},
         true},
        {"characters counted for bytes",
         shortened(9999, ann, 3) + frame(2, good),
         {{9999, ann}, {2, good}},
         true},
        {"characters counted, a tag cut whole",
         shortened(9999, ann, 12) + frame(2, good),
         {{9999, ann}, {2, good}},
         true},
        {"characters counted, nothing behind", shortened(9999, ann, 3), {{9999, ann}}, true},
        {"characters counted twice in a row",
         shortened(1, ann, 3) + shortened(2, ann, 3),
         {{1, ann}, {2, ann}},
         true},
        {"a child whose name begins like the root's",
         shortened(1, "<A><Ab>1</Ab><Ab>2</Ab></A>", 15) + frame(2, good),
         {{1, "<A><Ab>1</Ab><Ab>2</Ab></A>"}, {2, good}},
         true},
        {"an element that is never closed",
         frame(1, "<A><b>") + frame(2, good),
         {{1, "<A><b>"}, {2, good}},
         false},
    };
}

class FrameStream : public testing::TestWithParam<StreamCase> {};

TEST_P(FrameStream, GivesTheSameFramesHoweverTheBytesAreSplit) {
    const StreamCase& stream = GetParam();
    const std::string_view bytes = stream.bytes;

    const Received atOnce = receive({bytes});
    EXPECT_EQ(atOnce.frames, stream.frames);
    EXPECT_EQ(!atOnce.faults.empty(), stream.faulty);

    for (std::size_t at = 1; at < bytes.size(); ++at) {
        EXPECT_EQ(receive({bytes.substr(0, at), bytes.substr(at)}).frames, stream.frames)
            << "split at " << at;
    }
    std::vector<std::string_view> single;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        single.push_back(bytes.substr(at, 1));
    }
    EXPECT_EQ(receive(single).frames, stream.frames);
}

std::string caseName(const testing::TestParamInfo<StreamCase>& one) {
    std::string name = one.param.name;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; },
        '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Streams, FrameStream, testing::ValuesIn(streamCases()), caseName);

TEST(FrameReader, ReadsFramesWhoseLengthNeedsTheHighestBit) {
    for (const std::size_t size : {32760U, 32768U, 65527U}) {
        const std::string xml = "<A>" + std::string(size - 7, 'x') + "</A>";
        const Received received = receive({frame(5, xml) + frame(6, "<B/>")});
        EXPECT_THAT(received.frames, ElementsAre(Frame{5, xml}, Frame{6, "<B/>"}));
    }
}

TEST(FrameReader, KeepsTheBytesOfAFrameThatIsNotThereYet) {
    FrameReader reader;
    const std::string bytes = frame(1, "<A></A>");
    reader.feed(std::string_view(bytes).substr(0, 5));
    EXPECT_FALSE(reader.next());
    EXPECT_EQ(reader.pendingBytes(), 5U);
    reader.feed(std::string_view(bytes).substr(5));
    EXPECT_TRUE(reader.next());
    EXPECT_EQ(reader.pendingBytes(), 0U);
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

TEST(Frame, RefusesWhatNoHeaderCanSay) {
    EXPECT_FALSE(encodeFrame(1, std::string(Frame::kMaxXmlBytes + 1, 'x')));
    EXPECT_TRUE(encodeFrame(1, std::string(Frame::kMaxXmlBytes, 'x')));
    EXPECT_FALSE(encodeFrame(10000, "<A/>"));
    EXPECT_FALSE(encodeFrame(-1, "<A/>"));
}

TEST(Frame, CountsBytesIncludingTheHeader) {
    EXPECT_EQ(encodeFrame(42, "<A>\xC3\xBC</A>"), std::string("\0\0\0\x11"
                                                              "0042<A>\xC3\xBC</A>",
                                                              17));
}

}  // namespace
