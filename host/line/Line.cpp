#include "host/line/Line.h"

#include <algorithm>
#include <utility>

#include "journalservice/JournalListMemoryIfc.h"
#include "journalservice/JournalServiceObserverSubscriptionIfc.h"
#include "platform/logging/Logging.h"
#include "platform/management/MgmtAgentIfc.h"

namespace host {

namespace {

// The time for events of the switch that wait when the line ends.
constexpr std::chrono::seconds kTimeForEvents{2};

/// The digits that may precede a number.
std::vector<std::string> dialledBefore(const LineSettings& settings) {
    std::vector<std::string> digits = settings.featureAccessCodes;
    digits.push_back(settings.outsideLine);
    return digits;
}

}  // namespace

Line::Line(const LineSettings& settings, std::unique_ptr<Service> journal, Database& database,
           LiveCallWriter& liveCalls, WorkerPool& pool, TimerSource& timerSource)
    : m_strand(pool),
      m_context(m_strand, timerSource),
      m_digits(settings.region, settings.featureAccessCodes),
      m_neverLog(settings.neverLog, dialledBefore(settings), m_digits),
      m_numberTexts(settings.region, m_digits),
      m_dialling({.region = settings.region,
                  .featureAccessCodes = settings.featureAccessCodes,
                  .outsideLine = settings.outsideLine,
                  .form = settings.dialForm}),
      m_phonebook(database, m_digits, settings.link.ownDevice, std::chrono::seconds(1),
                  settings.sharedContacts),
      m_liveCallStore(database, liveCalls, settings.link.ownDevice, settings.events),
      m_dataAccess(database, settings.link.ownDevice, &m_digits,
                   {&m_liveCallStore, [this] { return m_management.aheadOfUtc(); }, settings.events}),
      m_storedLists(database, settings.link.ownDevice, &m_digits, &m_numberTexts),
      m_management(database, settings.link.ownDevice, settings.managementFirst, settings.managementOverrides,
                   post()),
      m_team(settings.loggedSharedDevices),
      m_link(settings.sharedLink, completed(settings.link), eventPost(post()), eventPostHere()),
      m_log(settings.link.ownDevice),
      m_journal(std::move(journal), m_strand, m_context),
      m_listMemory(settings.loadsListsAtFirstNeed ? dynamic_cast<JournalListMemoryIfc*>(m_journal.service())
                                                  : nullptr),
      m_services{{"ClockServiceIfc", m_clock},
                 {"DigitAnalysisServiceIfc", m_digits},
                 {"DirectoryServiceIfc", m_phonebook},
                 {"DataAccessServiceIfc", m_dataAccess},
                 {"LocalMgmtIfc", m_management},
                 {"MobilityServiceIfc", m_mobility},
                 {"TeamServiceIfc", m_team},
                 {"UCServiceIfc", m_unifiedCommunications},
                 {"PallaxServiceIfc", m_pallax},
                 {"WSIServiceIfc", m_webServices},
                 {"CSTAServiceIfc", m_link}} {
    m_observers.add(m_log);
}

Line::~Line() {
    stop();
}

void Line::setStatusListener(CstaLink::StatusListener listener) {
    m_statusListener = std::move(listener);
}

void Line::start() {
    m_started = true;
    m_link.setStatusListener([this](CstaLink::Status status) {
        if (m_statusListener) {
            m_statusListener(status);
        }
    });
    static_cast<void>(m_phonebook.reindexIfRulesChanged(m_digits.rulesKey()));
    m_strand.runAndWait([this] {
        for (const NamedService& service : m_services) {
            m_context.registerService(service.name, service.executable);
            service.executable.init(m_context);
        }
    });
    m_journal.start();
    if (m_listMemory != nullptr) {
        m_listMemory->loadListsAtFirstNeed();
    }
    m_management.announceValues();
    m_strand.runAndWait([this] { subscribeObserver(); });
    m_link.start();
}

void Line::disconnect() {
    Clock::time_point unset = Clock::time_point::max();
    m_eventsEnd.compare_exchange_strong(unset, Clock::now() + kTimeForEvents);
    m_link.stop();
}

void Line::stop() {
    if (!std::exchange(m_started, false)) {
        return;
    }
    disconnect();
    m_strand.runAndWait([this] { releaseJournal(); });
    if (m_droppedEvents != 0) {
        logAppUni("Line", __FILE_NAME__, 3, __LINE__, "%zu events of the switch are dropped: the line ends",
                  m_droppedEvents.load());
    }
    m_journal.stop();
    m_strand.runAndWait([this] {
        std::for_each(m_services.rbegin(), m_services.rend(), [this](const NamedService& service) {
            service.executable.shutdown();
            m_context.removeService(service.name);
        });
    });
    m_strand.close();
}

std::function<void(std::function<void()>)> Line::post() const {
    return [post = m_strand.weakPoster()](std::function<void()> work) { post(std::move(work)); };
}

CstaLink::Post Line::eventPost(CstaLink::Post post) {
    return [this, post = std::move(post)](std::function<void()> work) {
        post([this, event = std::move(work)] {
            if (Clock::now() < m_eventsEnd.load()) {
                event();
            } else {
                ++m_droppedEvents;
            }
        });
    };
}

CstaLink::PostHere Line::eventPostHere() {
    const Strand::Helper helper = m_strand.helper();
    return {
        .queue = eventPost([queue = helper.queue](std::function<void()> work) { queue(std::move(work)); }),
        .run = helper.run};
}

CstaLinkConfig Line::completed(CstaLinkConfig link) {
    link.liveCallStore = &m_liveCallStore;
    if (!m_neverLog.empty()) {
        link.isUnlogged = [this](const std::string& number) { return m_neverLog.matches(number); };
    }
    link.eventListener = [this](std::string_view name) {
        m_lastEvent = Clock::now();
        if (m_eventListener) {
            m_eventListener(name);
        }
    };
    return link;
}

bool Line::isIdle(std::chrono::milliseconds time) const noexcept {
    return liveCallCount() == 0 && m_lastEvent.load() < Clock::now() - time;
}

void Line::unloadLists(std::chrono::milliseconds idle) {
    if (m_listMemory != nullptr && m_listMemory->areListsLoaded() && isIdle(idle)) {
        m_strand.post([this, idle] {
            // Changes that the database refuses keep them.
            static_cast<void>(isIdle(idle) && m_listMemory->unloadLists());
        });
    }
}

void Line::subscribeObserver() {
    if (auto* subscription = dynamic_cast<JournalServiceObserverSubscriptionIfc*>(m_journal.service())) {
        subscription->subscribeForJournalEvents(&m_observers);
        m_log.setSubscribed();
    }
}

void Line::releaseJournal() {
    Service& journal = *m_journal.service();
    if (auto* subscription = dynamic_cast<JournalServiceObserverSubscriptionIfc*>(&journal)) {
        subscription->unsubscribeForJournalEvents(&m_observers);
    }
    if (auto* agent = dynamic_cast<MgmtAgentIfc*>(&journal)) {
        m_management.unregisterAgent(*agent);
    }
    m_link.releaseService(journal);
}

}  // namespace host
