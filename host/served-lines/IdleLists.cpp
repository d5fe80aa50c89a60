#include "host/served-lines/IdleLists.h"

namespace host {

void IdleLists::start() {
    m_strand.post([this] { lookLater(); });
}

void IdleLists::stop() {
    m_strand.post([this] { m_next.reset(); });
    m_strand.close();
}

void IdleLists::lookLater() {
    m_next = m_timers.schedule(kBetween, [this, post = m_strand.weakPoster()] {
        post([this] {
            m_unload(kIdle);
            lookLater();
        });
    });
}

}  // namespace host
