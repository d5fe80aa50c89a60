#include "host/webhooks/Webhooks.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <thread>
#include <utility>

#include "host/curl/CurlLibrary.h"
#include "host/database/Database.h"
#include "host/remote/RemoteError.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

using Clock = Webhook::Clock;

/// Between two looks for events of which the thread was not told, because the database had kept them.
constexpr std::chrono::seconds kBetweenLooks{5};
constexpr std::chrono::milliseconds kBetweenStores{100};
constexpr std::chrono::seconds kBetweenLimits{10};
constexpr std::chrono::seconds kAfterError{1};

}  // namespace

class Webhooks::Impl {
public:
    Impl(Database& database, std::vector<WebhookSettings> webhooks, DigitAnalysisServiceIfc* digits)
        : m_database(database), m_transfers(m_curl.multiInit(), m_curl.multiCleanup) {
        if (!m_transfers) {
            throw RemoteError("cannot make an HTTP client");
        }
        for (WebhookSettings& each : webhooks) {
            m_hooks.push_back(std::make_unique<Webhook>(
                std::move(each), WaitingEvents::Source{database, digits}, m_curl, m_transfers.get()));
            m_events.push_back(&m_hooks.back()->events());
        }
    }
    ~Impl() { stop(); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    void start() {
        m_isLoaded = WaitingEvents::load(m_database, m_events);
        m_thread = std::thread([this] { run(); });
    }

    void stop() {
        if (m_thread.joinable()) {
            m_stopping = true;
            m_curl.multiWakeup(m_transfers.get());
            m_thread.join();
        }
    }

    void eventAdded() { m_curl.multiWakeup(m_transfers.get()); }

    [[nodiscard]] std::vector<WebhookState> states() const {
        std::vector<WebhookState> states;
        for (const auto& hook : m_hooks) {
            states.push_back(hook->state());
        }
        return states;
    }

private:
    void run() {
        while (!m_stopping) {
            Clock::time_point next{};
            try {
                next = step();
            } catch (const std::exception& error) {
                logAppUni("Webhooks", __FILE_NAME__, 2, __LINE__, "delivering events failed: %s",
                          error.what());
                next = Clock::now() + kAfterError;
            }
            const auto pause = std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now());
            m_curl.multiPoll(m_transfers.get(), nullptr, 0,
                             static_cast<int>(std::max<long>(0, pause.count())), nullptr);
        }
        static_cast<void>(WaitingEvents::storePositions(m_database, m_events));
    }

    /// Returns the time of the next step, which input or a new event makes earlier.
    Clock::time_point step() {
        Clock::time_point next = Clock::now() + kBetweenLooks;
        if (!m_isLoaded && !(m_isLoaded = WaitingEvents::load(m_database, m_events))) {
            return next;
        }
        if (Clock::now() >= m_nextLimit) {
            m_nextLimit = Clock::now() + kBetweenLimits;
            std::for_each(m_hooks.begin(), m_hooks.end(), [](auto& hook) { hook->limit(); });
        }
        do {
            for (const auto& hook : m_hooks) {
                hook->sendNext(Clock::now());
            }
            int running = 0;
            m_curl.multiPerform(m_transfers.get(), &running);
        } while (takeFinished() && !m_stopping);
        storePositions();
        next = std::min(next, m_nextStore.value_or(next));
        for (const auto& hook : m_hooks) {
            if (const auto attempt = hook->nextAttempt(); attempt && *attempt > Clock::now()) {
                next = std::min(next, *attempt);
            }
        }
        return next;
    }

    /// Returns true if a transfer was finished.
    bool takeFinished() {
        bool any = false;
        int remaining = 0;
        while (const CURLMsg* const message = m_curl.multiInformation(m_transfers.get(), &remaining)) {
            // The message does not outlive the end of the transfer.
            const CURLcode result = message->data.result;
            const auto hook = std::find_if(m_hooks.begin(), m_hooks.end(), [message](const auto& each) {
                return each->post().handle() == message->easy_handle;
            });
            if (message->msg == CURLMSG_DONE && hook != m_hooks.end()) {
                (*hook)->finished(result);
                any = true;
            }
        }
        return any;
    }

    /// Positions that change often are stored together.
    void storePositions() {
        const auto now = Clock::now();
        if (now < m_lastStore + kBetweenStores) {
            m_nextStore = m_lastStore + kBetweenStores;
            return;
        }
        m_lastStore = now;
        const bool done = WaitingEvents::storePositions(m_database, m_events);
        m_nextStore = done ? std::nullopt : std::optional(now + kAfterError);
    }

    // Constant after construction.
    Database& m_database;
    const CurlLibrary& m_curl = CurlLibrary::get();
    const std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)> m_transfers;
    std::vector<std::unique_ptr<Webhook>> m_hooks;
    std::vector<WaitingEvents*> m_events;

    std::atomic<bool> m_stopping{false};

    // The thread only, once it runs.
    bool m_isLoaded = false;
    Clock::time_point m_nextLimit{};
    Clock::time_point m_lastStore{};
    std::optional<Clock::time_point> m_nextStore;

    std::thread m_thread;
};

Webhooks::Webhooks(Database& database, std::vector<WebhookSettings> webhooks, DigitAnalysisServiceIfc* digits)
    : m_impl(std::make_unique<Impl>(database, std::move(webhooks), digits)) {}

Webhooks::~Webhooks() = default;

void Webhooks::start() {
    m_impl->start();
}

void Webhooks::stop() {
    m_impl->stop();
}

void Webhooks::eventAdded() {
    m_impl->eventAdded();
}

std::vector<WebhookState> Webhooks::states() const {
    return m_impl->states();
}

}  // namespace host
