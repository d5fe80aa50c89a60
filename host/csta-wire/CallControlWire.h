#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/csta-wire/WireDocument.h"

namespace host {

// The services MakeCall, AnswerCall and ClearConnection in XML, for both ends of the link. Pure functions.
//
// The client writes a request with `writeCallControlRequest`. It reads the message with the request's invoke
// id with `readCstaRefusal` first, which recognises every form of a refusal, then with
// `readCallControlResponse`.
//
// The switch reads a request with `readCallControlRequest`, and responds with `writeCallControlResponse`, or
// with `writeCstaRefusal` ("operation", "invalidCallID"). Its events may precede the response.
//
// Writing follows the schema. Reading takes members in any order, with or without name spaces, and the forms
// that switches and clients are known to write.

/// A ConnectionID. Either member may be empty: the text was not written.
struct WireConnection {
    std::string callId;
    /// The device as it is written; compare it by `comparableNumber`.
    std::string deviceId;

    [[nodiscard]] bool operator==(const WireConnection&) const = default;
};

enum class CallControlService { eMakeCall, eAnswerCall, eClearConnection };

/// "MakeCall", "AnswerCall", "ClearConnection".
[[nodiscard]] std::string_view nameOf(CallControlService service) noexcept;

/// One request. The service determines which members are used.
struct CallControlRequest {
    CallControlService service = CallControlService::eMakeCall;

    // MakeCall.
    std::string callingDevice{};
    /// The number or address to dial.
    std::string calledNumber{};
    /// The switch alerts the calling phone first, and dials when its user goes off hook.
    bool prompt = false;

    // AnswerCall, ClearConnection.
    WireConnection connection{};
};

[[nodiscard]] std::string writeCallControlRequest(const CallControlRequest& request,
                                                  std::string_view nameSpace);
/// Returns `std::nullopt` for another message.
[[nodiscard]] std::optional<CallControlRequest> readCallControlRequest(const WireDocument& message);

/// `made` is the connection of the calling device; the other services have none in their responses.
[[nodiscard]] std::string writeCallControlResponse(CallControlService service, const WireConnection& made,
                                                   std::string_view nameSpace);
/// The connection in the response, which may be empty; `std::nullopt` if `message` is no response of the
/// service.
[[nodiscard]] std::optional<WireConnection> readCallControlResponse(CallControlService service,
                                                                    const WireDocument& message);

/// A negative response: "operation" and "invalidCallID", for example. Either may be empty.
struct CstaRefusal {
    std::string category;
    std::string value;

    [[nodiscard]] bool operator==(const CstaRefusal&) const = default;
    /// True if the switch does not have the service, or not for this phone. Refusals of one call, one
    /// destination or one state are no such.
    [[nodiscard]] bool isNotSupported() const noexcept;
};

[[nodiscard]] std::string writeCstaRefusal(std::string_view category, std::string_view value,
                                           std::string_view nameSpace);
/// Returns `std::nullopt` if the message is no negative response.
[[nodiscard]] std::optional<CstaRefusal> readCstaRefusal(const WireDocument& message);

/// Reads a ConnectionID. Its device may be in an inner element, or be the only content.
[[nodiscard]] WireConnection readConnection(pugi::xml_node member);

}  // namespace host
