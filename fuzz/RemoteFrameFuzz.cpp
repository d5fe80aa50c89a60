#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/support/Property.h"
#include "host/framework/OperaTextAdapter.h"
#include "host/remote/RemoteFrame.h"
#include "platform/client-utils/Utf8.h"
#include "platform/framework/Method.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/ObserverMessage.h"

// Feeds any bytes to the readers of the socket protocol, as both sides have them: the frames of a stream, and
// their texts by kind. What was read is written and must be read back equal.

namespace {

using fuzz::require;
using host::RemoteFrame;
using Helper = JournalServiceHelper;

template <typename Item>
void checkList(const std::string& xml, bool (*parse)(const std::string&, std::deque<Item>&),
               std::string (*write)(const std::deque<Item>&)) {
    std::deque<Item> items;
    if (!parse(xml, items)) {
        return;
    }
    const std::string written = write(items);
    require(utf8::isXmlText(written), "a list has bytes that XML forbids");
    std::deque<Item> again;
    require(parse(written, again) && again == items, "a list that was written is read as another one");
}

void checkLists(const std::string& xml) {
    checkList(xml, &Helper::parseXMLMissedCallList, &Helper::respGetMissedCallList);
    checkList(xml, &Helper::parseXMLDialledCallList, &Helper::respGetDialledCallList);
    checkList(xml, &Helper::parseXMLReceivedCallList, &Helper::respGetReceivedCallList);
    checkList(xml, &Helper::parseXMLForwardedCallList, &Helper::respGetForwardedCallList);
    checkList(xml, &Helper::parseXMLCallBackList, &Helper::respGetCallBackList);
}

void checkMethod(const std::string& text) {
    const host::OperaTextAdapter adapter;
    Method method;
    if (!adapter.decode(text, method)) {
        return;
    }
    const std::string written = adapter.encode(method);
    Method again;
    require(adapter.decode(written, again) && adapter.encode(again) == written &&
                again.getName() == method.getName() &&
                again.getStringParameters().size() == method.getStringParameters().size(),
            "a method that was written is read as another one");
}

void checkRequest(const std::string& text) {
    static_cast<void>(Helper::getMethodFromXMLMsg(text));
    std::string value;
    static_cast<void>(Helper::getXMLValue(text, "EntryId", value));
    const auto ids = Helper::getXMLValues(text, "EntryId");
    require(ids.empty() || Helper::getXMLValue(text, "EntryId", value), "the first of the ids is missing");
    require(ids.empty() || value == ids.front(), "the first of the ids is another one");
}

void checkText(const RemoteFrame& frame) {
    switch (frame.kind) {
        case RemoteFrame::Kind::eRequest: checkRequest(frame.text); break;
        case RemoteFrame::Kind::eMethod: checkMethod(frame.text); break;
        case RemoteFrame::Kind::eLine: break;
        case RemoteFrame::Kind::eResponse: checkLists(frame.text); break;
        case RemoteFrame::Kind::eNotification:
            static_cast<void>(journalxml::parseObserverMessage(frame.text));
            break;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    while (bytes.size() >= RemoteFrame::kLengthBytes) {
        std::array<char, RemoteFrame::kLengthBytes> head{};
        std::copy_n(bytes.begin(), head.size(), head.begin());
        const std::optional<std::size_t> length = RemoteFrame::readLength(head);
        if (!length) {
            break;
        }
        require(*length >= RemoteFrame::kHeadBytes &&
                    *length <= RemoteFrame::kHeadBytes + RemoteFrame::kMaxTextBytes,
                "a frame is longer than the limit");
        const std::string_view body = bytes.substr(head.size(), *length);
        const std::optional<RemoteFrame> frame = RemoteFrame::readBody(body);
        if (!frame || body.size() < *length) {
            break;
        }
        require(RemoteFrame::encode(frame->kind, frame->id, frame->text) ==
                    bytes.substr(0, head.size() + *length),
                "a frame that was written is read as another one");
        checkText(*frame);
        bytes.remove_prefix(head.size() + *length);
    }
    return 0;
}
