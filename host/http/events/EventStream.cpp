#include "host/http/events/EventStream.h"

namespace host {
namespace {

constexpr std::size_t kBatchBytes = 64U * 1024U;

}  // namespace

void EventStream::begin(std::unique_ptr<StreamSink> sink) {
    if (!m_registry.add(shared_from_this())) {
        return;
    }
    m_sink = std::move(sink);
    const EventRing& ring = m_registry.ring();
    std::string opening = "retry: 2000\n";
    const auto position = m_lastEventId.empty() ? ring.end() : ring.positionOf(m_lastEventId);
    if (position) {
        m_position = *position;
        // An id without data is no event, but the client stores it and can continue from here.
        opening += "id: " + ring.idAt(m_position) + "\n\n";
    } else {
        opening += resync();
    }
    write(std::move(opening));
}

void EventStream::wake() {
    if (m_writing || m_sink == nullptr) {
        return;
    }
    auto batch = m_registry.ring().from(m_position, kBatchBytes);
    if (!batch) {
        write(resync());
    } else if (!batch->text.empty()) {
        m_position = batch->next;
        write(std::move(batch->text));
    }
}

void EventStream::keepAlive() {
    if (!m_writing && m_sink != nullptr) {
        write(":\n\n");
    }
}

void EventStream::disconnected() {
    end();
    m_registry.remove(*this);
}

void EventStream::end() {
    m_sink.reset();
}

void EventStream::write(std::string text) {
    m_writing = true;
    // The sink may report a failure, and with it the end of the stream, within the call.
    const std::shared_ptr<StreamSink> sink = m_sink;
    sink->write(std::move(text), [weak = weak_from_this()](bool written) {
        const auto self = weak.lock();
        if (self == nullptr) {
            return;
        }
        self->m_writing = false;
        if (written) {
            self->wake();
        } else {
            self->disconnected();
        }
    });
}

std::string EventStream::resync() {
    const EventRing& ring = m_registry.ring();
    m_position = ring.end();
    return "id: " + ring.idAt(m_position) + "\nevent: resync\ndata: {}\n\n";
}

}  // namespace host
