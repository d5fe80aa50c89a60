#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/csta-events/DeviceReader.h"

namespace host {

class WireDocument;

/// The calls of one device, as SnapshotDevice returns them. A plain value.
struct DeviceSnapshot {
    struct Connection {
        std::string callId;
        /// The device's own `CSTALocalConnectionState`; `std::nullopt` if the switch does not report it.
        std::optional<int> own;
        /// The states of the other parties, in no order.
        std::vector<int> others;
    };
    std::vector<Connection> connections;
};

/// The parties of one call, as SnapshotCall returns them. A plain value.
struct CallSnapshot {
    struct Party {
        EventDevice device;
        /// A `CSTALocalConnectionState`; `std::nullopt` if the switch does not report it.
        std::optional<int> state;
    };
    EventDevice calling;
    EventDevice called;
    std::vector<Party> parties;
};

/// Reads the messages of both snapshot services, by local names. A snapshot may come in one response or in
/// segments: the response then has a cross reference, and messages of the switch with this reference follow.
class SnapshotReader {
public:
    /// The cross reference of a segmented snapshot, inside its choice element or directly below the root;
    /// empty if the message has none.
    [[nodiscard]] static std::string crossRefIdOf(const WireDocument& message);
    /// True if the message has the element for the snapshot's data, which may be empty.
    [[nodiscard]] static bool hasData(const WireDocument& message);
    /// True for a segment after which no other follows.
    [[nodiscard]] static bool isLastSegment(const WireDocument& segment);

    /// Adds the connections of a response or a segment.
    static void addTo(DeviceSnapshot& snapshot, const WireDocument& message);
    /// Adds the parties of a response or a segment; a response also sets calling and called device.
    static void addTo(CallSnapshot& snapshot, const WireDocument& message, const DeviceReader& devices);
};

}  // namespace host
