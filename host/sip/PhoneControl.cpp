#include "host/sip/PhoneControl.h"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>

#include "host/log/PrivateText.h"
#include "platform/logging/Logging.h"

namespace host {

namespace {

constexpr const char* kComponent = "SIP Gateway";

}  // namespace

PhoneControl::PhoneControl(asio::ip::tcp::socket socket, Handlers handlers)
    : m_socket(std::move(socket)), m_timer(m_socket.get_executor()), m_handlers(std::move(handlers)) {
    std::error_code ignored;
    m_socket.tcp().set_option(asio::ip::tcp::no_delay(true), ignored);
}

void PhoneControl::start() {
    read();
}

void PhoneControl::send(const std::vector<Command>& commands, ResponseHandler handler) {
    if (!m_open) {
        handler({});
        return;
    }
    std::string bytes;
    Batch batch{.firstToken = m_lastToken + 1,
                .size = commands.size(),
                .deadline = std::chrono::steady_clock::now() + kPatience,
                .responses = {},
                .handler = std::move(handler)};
    for (const Command& command : commands) {
        bytes +=
            netstring(writePhoneCommand(command.name, command.parameters, std::to_string(++m_lastToken)));
    }
    m_batches.push_back(std::move(batch));
    m_queue.push(std::move(bytes), [self = shared_from_this()](const std::error_code& error) {
        if (error) {
            self->fail(error.message());
        }
    });
    if (m_batches.size() == 1) {
        awaitDeadline();
    }
}

void PhoneControl::close() {
    m_open = false;
    m_socket.close();
    m_queue.clear();
    m_timer.cancel();
    m_handlers = {};
    for (const Batch& batch : std::exchange(m_batches, {})) {
        batch.handler({});
    }
}

void PhoneControl::read() {
    m_socket.async_read_some(
        asio::buffer(m_bytes), [self = shared_from_this()](std::error_code error, std::size_t size) {
            if (!self->m_open) {
                return;
            }
            if (error) {
                self->fail(error == asio::error::eof || error == asio::error::connection_reset
                               ? "baresip has ended"
                               : error.message());
                return;
            }
            self->m_reader.feed({self->m_bytes.data(), size});
            self->received();
        });
}

void PhoneControl::received() {
    while (const std::optional<std::string> text = m_reader.next()) {
        logAppUni(kComponent, __FILE_NAME__, 7, __LINE__, "from baresip: %s", text->c_str());
        const auto message = readPhoneMessage(*text);
        if (!message) {
            logAppUni(kComponent, __FILE_NAME__, 3, __LINE__, "message of baresip is not understood: %s",
                      loggedText(*text).c_str());
            continue;
        }
        if (const auto* event = std::get_if<SipPhoneEvent>(&*message)) {
            m_handlers.event(*event);
        } else {
            process(std::get<PhoneResponse>(*message));
        }
        if (!m_open) {
            return;
        }
    }
    if (m_reader.isInvalid()) {
        fail("the bytes from the control port are not those of baresip");
        return;
    }
    read();
}

/// The telephone responds in order.
void PhoneControl::process(const PhoneResponse& response) {
    if (m_batches.empty()) {
        return;
    }
    Batch& batch = m_batches.front();
    if (response.token != std::to_string(batch.firstToken + batch.responses.size())) {
        return;
    }
    batch.responses.push_back(response);
    if (batch.responses.size() == batch.size) {
        const Batch done = std::move(batch);
        m_batches.pop_front();
        awaitDeadline();
        done.handler(done.responses);
    }
}

void PhoneControl::awaitDeadline() {
    m_timer.cancel();
    if (m_batches.empty()) {
        return;
    }
    m_timer.expires_at(m_batches.front().deadline);
    m_timer.async_wait([self = shared_from_this()](std::error_code error) {
        if (!error && self->m_open && !self->m_batches.empty() &&
            self->m_batches.front().deadline <= std::chrono::steady_clock::now()) {
            self->fail("baresip does not respond", true);
        }
    });
}

void PhoneControl::fail(const std::string& reason, bool isSilent) {
    if (!m_open) {
        return;
    }
    const auto self = shared_from_this();
    const Handlers handlers = std::move(m_handlers);
    close();
    handlers.closed(reason, isSilent);
}

}  // namespace host
