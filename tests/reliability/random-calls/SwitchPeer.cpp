#include "tests/reliability/random-calls/SwitchPeer.h"

#include <algorithm>
#include <array>
#include <asio/write.hpp>
#include <chrono>
#include <optional>
#include <utility>

#include "host/csta-wire/Frame.h"
#include "host/csta-wire/FrameReader.h"
#include "host/csta-wire/MessageWriter.h"

namespace reliability {

namespace {

constexpr const char* kNameSpace = "http://www.ecma-international.org/standards/ecma-323/csta/ed4";
constexpr int kEventInvokeId = 9999;
constexpr std::chrono::seconds kPatience{20};

using asio::ip::tcp;

host::MessageWriter messageOf(const char* root) {
    return {root, kNameSpace};
}

void writeParty(host::MessageWriter& writer, const char* member, const Party& party, const Dialect& dialect) {
    writer.open(member);
    if (party.withheld) {
        writer.empty("restricted");
    } else {
        writer.text("deviceIdentifier", deviceText(party, dialect));
    }
    writer.close();
}

}  // namespace

SwitchPeer::SwitchPeer()
    : m_acceptor(m_io, tcp::endpoint(asio::ip::address_v4::loopback(), 0)), m_socket(m_io) {}

SwitchPeer::~SwitchPeer() {
    disconnect();
}

std::uint16_t SwitchPeer::port() const {
    return m_acceptor.local_endpoint().port();
}

bool SwitchPeer::connect() {
    m_socket = m_acceptor.accept();
    m_socket.set_option(tcp::no_delay(true));
    {
        const std::lock_guard lock(m_mutex);
        m_crossRefId.clear();
        m_crossRefIdSent.clear();
        m_snapshotSent = false;
        m_callsTold.clear();
    }
    m_isOpen = true;
    m_reader = std::thread([this] {
        serve();
        m_isOpen = false;
    });
    return await([this] { return !m_crossRefId.empty(); });
}

bool SwitchPeer::awaitSnapshot(const std::vector<std::string>& callIds) {
    return await([&] {
        return m_snapshotSent &&
               std::all_of(callIds.begin(), callIds.end(), [this](const std::string& callId) {
                   return std::find(m_callsTold.begin(), m_callsTold.end(), callId) != m_callsTold.end();
               });
    });
}

bool SwitchPeer::awaitIdle() {
    int responses = 0;
    {
        const std::lock_guard lock(m_mutex);
        responses = m_responses;
    }
    {
        const std::lock_guard order(m_writeMutex);
        write(1, messageOf("RequestSystemStatus").finish());
    }
    return await([&] { return m_responses > responses; });
}

void SwitchPeer::disconnect() {
    if (m_reader.joinable()) {
        asio::error_code ignored;
        m_socket.shutdown(tcp::socket::shutdown_both, ignored);
        m_reader.join();
        m_socket.close(ignored);
    }
}

void SwitchPeer::setCalls(std::vector<Call> calls, const Dialect& dialect) {
    const std::lock_guard lock(m_mutex);
    m_calls = std::move(calls);
    m_dialect = dialect;
}

void SwitchPeer::send(const CallEvent& event, const Dialect& dialect, std::vector<Call> calls) {
    const std::lock_guard order(m_writeMutex);
    setCalls(std::move(calls), dialect);
    write(kEventInvokeId, writeEvent(event, dialect, crossRefId()));
}

void SwitchPeer::sendBytes(std::string_view bytes) {
    const std::lock_guard order(m_writeMutex);
    asio::error_code ignored;
    asio::write(m_socket, asio::buffer(bytes), ignored);
}

std::string SwitchPeer::crossRefId() {
    const std::lock_guard lock(m_mutex);
    return m_crossRefId;
}

void SwitchPeer::serve() {
    host::FrameReader reader;
    std::array<char, 4096> buffer{};
    asio::error_code error;
    while (true) {
        const std::size_t size = m_socket.read_some(asio::buffer(buffer), error);
        if (error) {
            return;
        }
        reader.feed({buffer.data(), size});
        while (const std::optional<host::Frame> frame = reader.next()) {
            std::string fault;
            const auto message = host::WireDocument::parse(frame->xml, fault);
            if (message && message->kind() == host::MessageKind::eRequest) {
                respond(frame->invokeId, *message);
            } else if (message) {
                const std::lock_guard lock(m_mutex);
                ++m_responses;
                m_changed.notify_all();
            }
        }
    }
}

void SwitchPeer::respond(int invokeId, const host::WireDocument& request) {
    const std::lock_guard order(m_writeMutex);
    write(invokeId, responseTo(request));
    const std::lock_guard lock(m_mutex);
    if (request.name() == "MonitorStart") {
        m_crossRefId = m_crossRefIdSent;
    } else if (request.name() == "SnapshotDevice") {
        m_snapshotSent = true;
    } else if (request.name() == "SnapshotCall") {
        m_callsTold.push_back(host::childText(host::childNamed(request.root(), "snapshotObject"), "callID"));
    }
    m_changed.notify_all();
}

std::string SwitchPeer::responseTo(const host::WireDocument& request) {
    const std::string name(request.name());
    if (name == "MonitorStart") {
        const std::string device = host::firstText(host::childNamed(request.root(), "monitorObject"));
        const std::string crossRefId = "m" + std::to_string(++m_monitors);
        if (device == kOwnNumber) {
            m_crossRefIdSent = crossRefId;
        }
        return messageOf("MonitorStartResponse").text("monitorCrossRefID", crossRefId).finish();
    }
    if (name == "SnapshotDevice") {
        return snapshotOfDevice();
    }
    if (name == "SnapshotCall") {
        return snapshotOfCall(host::childText(host::childNamed(request.root(), "snapshotObject"), "callID"));
    }
    if (name == "SystemRegister") {
        return messageOf("SystemRegisterResponse").text("sysStatRegisterID", "1").finish();
    }
    if (name == "RequestSystemStatus") {
        return messageOf("RequestSystemStatusResponse").text("systemStatus", "normal").finish();
    }
    if (name == "MonitorStop" || name == "ChangeMonitorFilter" || name == "SystemStatus") {
        return messageOf((name + "Response").c_str()).finish();
    }
    return messageOf("CSTAErrorCode").text("operation", "serviceNotSupported").finish();
}

std::string SwitchPeer::snapshotOfDevice() {
    const std::lock_guard lock(m_mutex);
    host::MessageWriter writer = messageOf("SnapshotDeviceResponse");
    writer.open("crossRefIDorSnapshotData").open("snapshotData");
    for (const Call& call : m_calls) {
        writer.open("snapshotDeviceResponseInfo");
        writer.open("connectionIdentifier").text("callID", call.id).text("deviceID", kOwnNumber).close();
        writer.open("endpointDevice").text("deviceIdentifier", kOwnNumber).close();
        writer.open("localCallState").open("compoundCallState");
        writer.text("localConnectionState", call.stateOf(SwitchModel::own()));
        for (const Call::Connection& one : call.connections) {
            if (!(one.party == SwitchModel::own())) {
                writer.text("localConnectionState", one.state);
            }
        }
        writer.close().close().close();
    }
    return writer.finish();
}

std::string SwitchPeer::snapshotOfCall(const std::string& callId) {
    const std::lock_guard lock(m_mutex);
    const auto call =
        std::find_if(m_calls.begin(), m_calls.end(), [&callId](const Call& one) { return one.id == callId; });
    if (call == m_calls.end()) {
        return messageOf("CSTAErrorCode").text("operation", "invalidCallID").finish();
    }
    host::MessageWriter writer = messageOf("SnapshotCallResponse");
    writer.open("crossRefIDorSnapshotData").open("snapshotData");
    for (const Call::Connection& one : call->connections) {
        writer.open("snapshotCallResponseInfo");
        writeParty(writer, "deviceOnCall", one.party, m_dialect);
        writer.open("callIdentifier").text("callID", callId).text("deviceID", one.party.number).close();
        writer.text("localConnectionInfo", one.state).close();
    }
    writer.close().close();
    writeParty(writer, "callingDevice", call->calling, m_dialect);
    writeParty(writer, "calledDevice", call->called, m_dialect);
    return writer.finish();
}

void SwitchPeer::write(int invokeId, const std::string& xml) {
    asio::error_code ignored;
    asio::write(m_socket, asio::buffer(host::encodeFrame(invokeId, xml).value()), ignored);
}

template <typename Condition>
bool SwitchPeer::await(Condition condition) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, kPatience, condition);
}

}  // namespace reliability
