#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/support/Property.h"
#include "host/csta-events/DeviceReader.h"
#include "host/csta-events/EventReader.h"
#include "host/csta-events/SnapshotReader.h"
#include "host/csta-wire/FrameReader.h"
#include "host/csta-wire/WireDocument.h"
#include "host/csta-wire/XmlText.h"
#include "platform/csta/CSTAEvent.h"

// Feeds any bytes of a peer to the link's readers. The first byte is the length of the segments. Every frame
// is read as an event. The bytes as a whole are also read as one event, so that the fuzzer reaches the event
// reader without a valid header.

namespace {

using fuzz::require;

std::size_t depthOf(pugi::xml_node root) {
    struct Walker : pugi::xml_tree_walker {
        bool for_each(pugi::xml_node& node) override {
            deepest = node.type() == pugi::node_element ? std::max(deepest, depth()) : deepest;
            return true;
        }
        int deepest = -1;
    } walker;
    root.traverse(walker);
    return static_cast<std::size_t>(walker.deepest + 2);
}

void checkTexts(const host::WireDocument& document) {
    struct Walker : pugi::xml_tree_walker {
        bool for_each(pugi::xml_node& node) override {
            require(host::isXmlUtf8(node.value()), "a text of a document has characters that XML forbids");
            for (const pugi::xml_attribute each : node.attributes()) {
                require(host::isXmlUtf8(each.value()), "an attribute has characters that XML forbids");
            }
            return true;
        }
    } walker;
    pugi::xml_node root = document.root();
    root.traverse(walker);
}

void checkSnapshots(const host::WireDocument& document) {
    host::DeviceSnapshot device;
    host::SnapshotReader::addTo(device, document);
    static_cast<void>(host::SnapshotReader::isLastSegment(document));
    static_cast<void>(host::SnapshotReader::crossRefIdOf(document));
}

void readAsEvent(std::string_view xml, host::EventReader& reader) {
    std::string fault;
    const auto document = host::WireDocument::parse(xml, fault);
    if (!document) {
        require(!fault.empty(), "a refused document has no reason");
        fuzz::requireUtf8(fault, "the reason of a refusal is not UTF-8");
        return;
    }
    require(depthOf(document->root()) <= host::WireDocument::kMaxDepth, "a document is nested too deep");
    checkTexts(*document);
    if (const auto permitted = host::withoutForbiddenCharacters(xml)) {
        require(!host::withoutForbiddenCharacters(*permitted), "forbidden characters remain");
        require(document->hasReplacements(), "a document has replaced no forbidden characters");
    }
    checkSnapshots(*document);
    for (const auto& each : reader.read(*document, {"M1", "localDeviceID"})) {
        const std::string text = each.event->toString();
        fuzz::requireUtf8(text, "the text of an event is not UTF-8");
        require(each.event->clone()->toString() == text, "the copy of an event is another event");
    }
}

/// The frames of the bytes, fed in segments.
std::vector<host::Frame> framesIn(std::string_view bytes, std::size_t segment) {
    host::FrameReader reader;
    std::vector<host::Frame> frames;
    std::size_t given = 0;
    for (std::size_t at = 0; at < bytes.size(); at += segment) {
        reader.feed(bytes.substr(at, segment));
        while (auto frame = reader.next()) {
            require(frame->invokeId >= 0 && frame->invokeId <= host::Frame::kEventInvokeId,
                    "a frame has an id of more than four digits");
            require(!frame->xml.empty() &&
                        frame->xml.size() <= host::Frame::kMaxXmlBytes + host::FrameReader::kTailBytes,
                    "the text of a frame is empty or too long");
            given += host::Frame::kHeaderBytes + frame->xml.size();
            require(given <= bytes.size(), "the frames have more bytes than came in");
            frames.push_back(std::move(*frame));
        }
        for (const std::string& fault : reader.takeFaults()) {
            fuzz::requireUtf8(fault, "the text of a fault is not UTF-8");
        }
        require(reader.pendingBytes() <= bytes.size(), "the reader has more bytes than came in");
    }
    return frames;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    host::PhoneCalls calls;
    host::EventReader events("2001", calls);
    const std::vector<host::Frame> frames = framesIn(bytes, 1 + data[0]);
    for (const host::Frame& frame : frames) {
        readAsEvent(frame.xml, events);
    }
    require(bytes.size() > host::FrameReader::kTailBytes || framesIn(bytes, bytes.size()) == frames,
            "the frames depend on the length of the segments");
    readAsEvent(bytes, events);

    // A message that is sent is received as it was sent. In one with a zero byte, another frame may begin.
    const auto sent = host::encodeFrame(data[0], bytes);
    std::string fault;
    const bool hasZero = bytes.find('\0') != std::string_view::npos;
    if (sent && !hasZero && host::WireDocument::parse(bytes, fault) &&
        host::missingClosingTag(bytes).empty()) {
        const std::vector<host::Frame> received = framesIn(*sent, sent->size());
        require(received.size() == 1 && received.front() == host::Frame{data[0], std::string(bytes)},
                "a frame that was sent is not received");
    }
    return 0;
}
