#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "host/csta-events/SnapshotReader.h"
#include "host/csta-wire/WireDocument.h"
#include "host/csta/requests/LinkMessages.h"
#include "host/csta/requests/RequestChannel.h"

namespace host {

/// Asks the switch for the calls of a device and for the parties of a call:
///  1. Sends SnapshotDevice or SnapshotCall.
///  2. The response has the data, or a cross reference. In the second case the segments with this reference
///     are collected up to the last one; those that came before the response, too.
///  3. The handler receives the snapshot, or `std::nullopt` if the switch refuses, does not respond in time,
///     leaves out a segment, responds without data, or is lost.
///
/// Reader thread only. A handler is called exactly once, and may send new requests.
class SnapshotRequests {
public:
    using DeviceHandler = std::function<void(const std::optional<DeviceSnapshot>&)>;
    using CallHandler = std::function<void(const std::optional<CallSnapshot>&)>;

    /// The references must outlive the object. `timeout` limits the time between segments.
    SnapshotRequests(asio::io_context& io, std::chrono::milliseconds timeout, RequestChannel& channel,
                     const LinkMessages& messages);

    void ofDevice(const std::string& device, DeviceHandler handler);
    /// `devices` converts the devices of the snapshot.
    void ofCall(const std::string& callId, const std::string& device, DeviceReader devices,
                CallHandler handler);
    /// A SnapshotDeviceData or SnapshotCallData message of the switch.
    void addSegment(const WireDocument& segment);
    /// Fails the requests whose segments are missing. Call it after the pending requests have failed.
    void connectionLost();

private:
    struct Request {
        std::function<void(const WireDocument&)> read;
        std::function<void(bool complete)> done;
        /// Set with the response, if segments follow.
        std::string crossRefId;
        std::unique_ptr<asio::steady_timer> timer;
    };

    void send(const std::string& xml, const char* responseName, Request request);
    void onResponse(unsigned long serial, const char* responseName, const SwitchResponse& response);
    void awaitSegment(unsigned long serial);
    void finish(unsigned long serial, bool complete);

    asio::io_context& m_io;
    const std::chrono::milliseconds m_timeout;
    RequestChannel& m_channel;
    const LinkMessages& m_messages;

    unsigned long m_lastSerial = 0;
    std::map<unsigned long, Request> m_requests;
};

}  // namespace host
