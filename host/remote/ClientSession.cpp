#include "host/remote/ClientSession.h"

#include <asio/buffer.hpp>
#include <asio/completion_condition.hpp>
#include <asio/dispatch.hpp>
#include <asio/error.hpp>
#include <asio/post.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>
#include <exception>
#include <optional>
#include <utility>

#include "journalservice/JournalServiceObserverIfc.h"
#include "journalservice/JournalServiceObserverSubscriptionIfc.h"
#include "platform/framework/InvokerResponse.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr const char* kObserverInterface = "JournalServiceObserverIfc";

/// Collects the response to one request until the invoker has finished.
class SessionResponse final : public InvokerResponse {
public:
    explicit SessionResponse(const std::string& requester) : m_requester(requester) {}

    void setPayload(const char* text, int length) override {
        m_payload.assign(text, static_cast<std::size_t>(length));
    }
    void complete() override { m_complete = true; }
    [[nodiscard]] std::string getRequester() const override { return m_requester; }
    [[nodiscard]] std::string getRequestedProtocol() const override { return OperaTextAdapter::kName; }

    [[nodiscard]] bool isComplete() const noexcept { return m_complete; }
    [[nodiscard]] std::string takePayload() noexcept { return std::move(m_payload); }

private:
    const std::string& m_requester;
    std::string m_payload;
    bool m_complete = false;
};

}  // namespace

ClientSession::ClientSession(Socket socket, std::string name, const ClientSurroundings& surroundings,
                             std::function<void()> gone)
    : m_name(std::move(name)),
      m_backend(surroundings.backend),
      m_writes(surroundings.writes),
      m_gone(std::move(gone)),
      m_reader(socket.get_executor()),
      m_backlog(surroundings.maxBacklogBytes),
      m_socket(std::move(socket)),
      m_strand(surroundings.workers) {
    m_writes.join();
}

ClientSession::~ClientSession() {
    m_writes.leave();
}

void ClientSession::start() {
    logAppUni("Remote", __FILE_NAME__, 6, __LINE__, "%s is connected", m_name.c_str());
    asio::error_code ignored;
    m_socket.non_blocking(true, ignored);
    m_strand.post([this] { attach(); });
    readLength();
}

void ClientSession::close(const std::string& reason) {
    if (std::exchange(m_closing, true)) {
        return;
    }
    if (reason.empty()) {
        logAppUni("Remote", __FILE_NAME__, 6, __LINE__, "%s is disconnected", m_name.c_str());
    } else {
        logAppUni("Remote", __FILE_NAME__, 3, __LINE__, "%s is cut off: %s", m_name.c_str(), reason.c_str());
    }
    m_backlog.close();
    {
        const std::lock_guard lock(m_socketMutex);
        asio::error_code ignored;
        m_socket.close(ignored);
    }
    m_strand.post([this] { detach(); });
}

// The transport supports one protocol only.
void ClientSession::selectProtocol(const std::string& /*protocolName*/) {}

void ClientSession::send(const std::string& request) {
    const ClientBacklog::Added added = m_backlog.addNotification(m_line->frames.frameOf(request));
    if (added != ClientBacklog::Added::eWakeUp || !m_writes.hasFewClients()) {
        handleQueued(added);
    } else if (!writeNow()) {
        asio::post(m_reader, [self = shared_from_this()] { self->writeRest(); });
    }
}

void ClientSession::readLength() {
    asio::async_read(m_socket, asio::buffer(m_length),
                     [self = shared_from_this()](const asio::error_code& error, std::size_t) {
                         if (error) {
                             self->close("");
                             return;
                         }
                         const std::optional<std::size_t> length = RemoteFrame::readLength(self->m_length);
                         if (length) {
                             self->readBody(*length);
                         } else {
                             self->close("it sent a frame with an invalid length");
                         }
                     });
}

// The buffer grows with the received bytes, so a client cannot allocate memory by announcing a long frame.
void ClientSession::readBody(std::size_t length) {
    asio::async_read(m_socket, asio::dynamic_buffer(m_body, length), asio::transfer_exactly(length),
                     [self = shared_from_this()](const asio::error_code& error, std::size_t) {
                         if (error) {
                             self->close("");
                             return;
                         }
                         std::optional<RemoteFrame> frame = RemoteFrame::readBody(self->m_body);
                         self->m_body = std::string();
                         using Kind = RemoteFrame::Kind;
                         const bool isFirst = frame && !self->m_device;
                         if (frame && (frame->kind == Kind::eRequest || frame->kind == Kind::eMethod ||
                                       (frame->kind == Kind::eLine && isFirst))) {
                             if (isFirst) {
                                 self->m_device = frame->kind == Kind::eLine ? frame->text : std::string();
                             }
                             self->take(std::move(*frame));
                         } else {
                             self->close("it sent a frame that is not a request");
                         }
                     });
}

void ClientSession::closeIfOf(const std::string& device) {
    // A client that has named no line may get the first one, which is never removed.
    if (m_device == device) {
        close("its line is removed");
    }
}

void ClientSession::take(RemoteFrame frame) {
    if (!m_closing) {
        m_strand.post([this, request = std::move(frame)] { handle(request); });
    }
}

void ClientSession::respond(std::uint32_t id, const std::string& text) {
    handleQueued(m_backlog.addResponse(
        std::make_shared<const std::string>(RemoteFrame::encode(RemoteFrame::Kind::eResponse, id, text))));
}

void ClientSession::handleQueued(ClientBacklog::Added added) {
    switch (added) {
        case ClientBacklog::Added::eWakeUp: m_writes.add(weak_from_this()); break;
        case ClientBacklog::Added::eOverflow:
            asio::post(m_reader, [weak = weak_from_this()] {
                if (const auto self = weak.lock()) {
                    self->close("it does not read what it is sent");
                }
            });
            break;
        case ClientBacklog::Added::eQueued:
        case ClientBacklog::Added::eClosed: break;
    }
}

void ClientSession::writeNext() {
    if (!writeNow()) {
        writeRest();
    }
}

void ClientSession::writeRest() {
    asio::async_write(m_socket, m_rest,
                      [self = shared_from_this()](const asio::error_code& failure, std::size_t) {
                          if (failure) {
                              self->close("");
                              return;
                          }
                          self->batchWritten();
                          self->writeNext();
                      });
}

bool ClientSession::writeNow() {
    while (m_backlog.take(m_writing)) {
        m_rest.clear();
        for (const ClientBacklog::Frame& frame : m_writing.frames) {
            m_rest.push_back(asio::buffer(*frame));
        }
        if (!writeBatch()) {
            return false;
        }
        batchWritten();
    }
    return true;
}

// Most clients take everything at once, which needs no wait for the socket.
bool ClientSession::writeBatch() {
    std::size_t taken = 0;
    {
        const std::lock_guard lock(m_socketMutex);
        asio::error_code error;
        taken = m_socket.write_some(m_rest, error);
    }
    auto next = m_rest.begin();
    for (; next != m_rest.end() && taken >= next->size(); ++next) {
        taken -= next->size();
    }
    m_rest.erase(m_rest.begin(), next);
    if (m_rest.empty()) {
        return true;
    }
    m_rest.front() += taken;
    return false;
}

void ClientSession::batchWritten() {
    m_writing.frames.clear();
    if (m_writing.hasResponse) {
        asio::dispatch(m_reader, [self = shared_from_this()] {
            if (!self->m_closing) {
                self->readLength();
            }
        });
    }
}

void ClientSession::attach() {
    try {
        m_proxy = m_backend.makeObserverProxy();
        m_proxy->initProxy(*this);
        m_backend.framework.registerProxy(kObserverInterface, m_name, *m_proxy);
    } catch (const std::exception& error) {
        logAppUni("Remote", __FILE_NAME__, 2, __LINE__, "%s cannot subscribe: %s", m_name.c_str(),
                  error.what());
    }
}

bool ClientSession::setLine(const std::string& device) {
    m_line = m_backend.line(device);
    return m_line != nullptr;
}

void ClientSession::handle(const RemoteFrame& request) {
    const bool namesLine = request.kind == RemoteFrame::Kind::eLine;
    if (!m_line && !setLine(namesLine ? request.text : std::string())) {
        asio::post(m_reader, [weak = weak_from_this()] {
            if (const auto self = weak.lock()) {
                self->close("there is no such line");
            }
        });
        return;
    }
    if (namesLine) {
        asio::post(m_reader, [weak = weak_from_this(), id = request.id] {
            if (const auto self = weak.lock()) {
                self->respond(id, "");
            }
        });
        return;
    }
    SessionResponse response(m_name);
    Invoker& invoker =
        request.kind == RemoteFrame::Kind::eMethod ? m_backend.methodInvoker : m_backend.invoker;
    invoker.handleMessage(&m_line->target, request.text.data(), static_cast<int>(request.text.size()),
                          &response);
    std::string text = response.takePayload();
    if (text.size() > RemoteFrame::kMaxTextBytes) {
        logAppUni("Remote", __FILE_NAME__, 2, __LINE__, "the response to a request of %s is too long",
                  m_name.c_str());
        text = request.kind == RemoteFrame::Kind::eMethod ? "fail" : "failure";
    }
    asio::post(m_reader, [weak = weak_from_this(), id = request.id, complete = response.isComplete(),
                          text = std::move(text)] {
        const auto self = weak.lock();
        if (self && complete) {
            self->respond(id, text);
        } else if (self) {
            self->close("its request got no response");
        }
    });
}

void ClientSession::detach() {
    auto* const subscription =
        m_line ? dynamic_cast<JournalServiceObserverSubscriptionIfc*>(&m_line->target) : nullptr;
    auto* const observer = dynamic_cast<JournalServiceObserverIfc*>(m_proxy.get());
    if (subscription != nullptr && observer != nullptr) {
        while (subscription->unsubscribeForJournalEvents(observer)) {}
    }
    m_backend.framework.removeProxy(kObserverInterface, m_name);
    m_proxy.reset();
    m_line.reset();
    asio::post(m_reader, m_gone);
}

}  // namespace host
