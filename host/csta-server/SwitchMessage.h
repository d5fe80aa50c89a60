#pragma once

#include <string>

namespace host {

/// A message that a switch has received or sent. A plain value.
struct SwitchMessage {
    enum class Direction { eReceived, eSent };

    Direction direction = Direction::eReceived;
    /// Number of the connection, from 1.
    int client = 0;
    int invokeId = 0;
    /// The local name of the root element ("MonitorStart").
    std::string name;
    std::string xml;
};

/// The response of the switch to requests of one kind, for fault injection.
enum class ResponseMode {
    eNormal,
    eRefusal,        ///< a CSTAErrorCode
    eWrongResponse,  ///< a response of another kind
    eNoResponse,
    eDisconnect,    ///< closes the connection
    eNotSupported,  ///< a CSTAErrorCode: the switch does not have the service
    eLate,          ///< the usual response, half a second later: the events of the request precede it
};

}  // namespace host
