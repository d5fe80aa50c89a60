#include "host/webhooks/Webhook.h"

#include <openssl/evp.h>
#include <openssl/sha.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <exception>
#include <new>
#include <utility>

#include "host/config/WebOrigin.h"
#include "host/webhooks/Signature.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

/// Names the webhook in the database, which must not have the password of its URL.
std::string keyOf(const std::string& url) {
    std::array<unsigned char, SHA256_DIGEST_LENGTH> hash{};
    if (EVP_Digest(url.data(), url.size(), hash.data(), nullptr, EVP_sha256(), nullptr) != 1) {
        throw std::bad_alloc();
    }
    std::string key;
    for (const unsigned char byte : hash) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02x", byte);
        key += digits.data();
    }
    return key;
}

bool isLoopback(const std::string& origin) {
    const std::string host = origin.substr(origin.find("://") + 3);
    return host.starts_with("127.") || host.starts_with("localhost") || host.starts_with("[::1]");
}

}  // namespace

Webhook::Webhook(WebhookSettings settings, const WaitingEvents::Source& source, const CurlLibrary& curl,
                 CURLM* transfers)
    : m_settings(std::move(settings)),
      m_receiver(receiverOrigin(m_settings.url).value_or("")),
      m_events(source, keyOf(m_settings.url), m_settings.events),
      m_post(curl, transfers) {}

void Webhook::sendNext(Clock::time_point now) {
    if (m_post.isBusy() || !m_backoff.isDue(now)) {
        return;
    }
    std::optional<EventMessage> next = m_events.next();
    if (!next) {
        return;
    }
    m_message = std::move(*next);
    const std::int64_t time =
        std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()).time_since_epoch().count();
    try {
        m_post.begin(m_settings.url,
                     {{"Content-Type", "application/json"},
                      {"X-Calljournal-Timestamp", std::to_string(time)},
                      {"X-Calljournal-Signature", signatureOf(m_settings.secret, time, m_message.body)}},
                     m_message.body,
                     {.isLoopback = isLoopback(m_receiver), .authorities = m_settings.authorities});
    } catch (const std::exception& error) {
        failed(error.what());
    }
}

std::optional<Webhook::Clock::time_point> Webhook::nextAttempt() const {
    return m_post.isBusy() ? std::nullopt : std::optional(m_backoff.next());
}

void Webhook::limit() {
    const std::int64_t dropped = m_post.isBusy() ? 0 : m_events.limit(std::chrono::system_clock::now());
    if (dropped > 0) {
        m_droppedCount += static_cast<std::uint64_t>(dropped);
        logAppUni("Webhooks", __FILE_NAME__, 2, __LINE__,
                  "%lld events for %s are dropped: they waited too long", static_cast<long long>(dropped),
                  m_receiver.c_str());
    }
}

void Webhook::finished(CURLcode result) {
    const std::string reason = m_post.end(result);
    if (!reason.empty()) {
        failed(reason);
        return;
    }
    ++m_sentCount;
    m_events.delivered(m_message);
    if (m_backoff.hasFailed()) {
        logAppUni("Webhooks", __FILE_NAME__, 4, __LINE__, "%s accepts events again", m_receiver.c_str());
    }
    m_backoff.succeeded();
    m_loggedFailure.clear();
}

void Webhook::failed(const std::string& reason) {
    ++m_failedCount;
    const auto pause = m_backoff.failed(Clock::now());
    if (m_loggedFailure != reason) {
        m_loggedFailure = reason;
        logAppUni("Webhooks", __FILE_NAME__, 3, __LINE__,
                  "an event cannot be delivered to %s: %s; the next attempt is in %lld s", m_receiver.c_str(),
                  reason.c_str(), static_cast<long long>(pause.count()));
    }
}

WebhookState Webhook::state() const {
    return {.receiver = m_receiver,
            .sent = m_sentCount,
            .failed = m_failedCount,
            .dropped = m_droppedCount,
            .waiting = m_events.count().value_or(0)};
}

}  // namespace host
