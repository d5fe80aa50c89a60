#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "host/csta-events/EventReader.h"
#include "host/csta-wire/FrameReader.h"
#include "host/csta-wire/WireDocument.h"
#include "platform/csta/CSTAEvent.h"

// Feeds any bytes of a peer to the link's readers. The first byte is the length of the segments. Every frame
// is read as an event. The bytes as a whole are also read as one event, so that the fuzzer reaches the event
// reader without a valid header.

namespace {

void readAsEvent(std::string_view xml, host::EventReader& reader) {
    std::string fault;
    if (const auto document = host::WireDocument::parse(xml, fault)) {
        for (const auto& event : reader.read(*document, {"M1", "localDeviceID"})) {
            static_cast<void>(event.event->toString());
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::size_t segment = 1 + data[0];

    host::PhoneCalls calls;
    host::EventReader events("2001", calls);
    host::FrameReader frames;
    for (std::size_t at = 0; at < bytes.size(); at += segment) {
        frames.feed(bytes.substr(at, segment));
        while (const auto frame = frames.next()) {
            if (frame->invokeId < 0 || frame->invokeId > host::Frame::kEventInvokeId || frame->xml.empty()) {
                std::abort();
            }
            readAsEvent(frame->xml, events);
        }
        static_cast<void>(frames.takeFaults());
    }
    readAsEvent(bytes, events);
    return 0;
}
