#include "tests/reliability/random-calls/PhoneUnderTest.h"

#include <chrono>
#include <utility>
#include <variant>

#include "host/lists/ListOperations.h"
#include "journal-items/Occurrences.h"
#include "journalservice/JournalServiceQorvexTel.h"
#include "platform/texts/SoftwareTypes.h"

namespace reliability {

namespace {

template <typename Item>
void addEntries(JournalServiceIfc& journal, const std::string& except, Entries& entries) {
    for (const Item& item : host::readList<Item>(journal)) {
        const std::string first = item.getFirstname();
        const std::string name =
            first + (first.empty() || item.getSurname().empty() ? "" : " ") + item.getSurname();
        for (const auto& info : occurrencesOf(item)) {
            bool elsewhere = false;
            if constexpr (std::is_same_v<Item, MissedCallItem>) {
                elsewhere = info.getCompletedElsewhere();
            }
            if (info.getNumber() != except) {
                entries.insert(entryText(ListTraits<Item>::kWord, info.getNumber(), name, elsewhere));
            }
        }
    }
}

host::LineSettings settingsOf(const PhoneType& type, std::uint16_t switchPort) {
    host::LineSettings settings;
    settings.link.port = switchPort;
    settings.link.ownDevice = kOwnNumber;
    settings.link.reconnectFirst = std::chrono::milliseconds(1);
    settings.managementFirst = {{"software-type", type.sip ? softwaretypes::sip : softwaretypes::qorvex},
                                {"server-based-features", type.forwards ? "true" : "false"}};
    settings.featureAccessCodes = {"*8"};
    return settings;
}

}  // namespace

PhoneUnderTest::PhoneUnderTest(const PhoneType& type, std::uint16_t switchPort)
    : m_line(std::make_unique<host::Line>(settingsOf(type, switchPort),
                                          std::make_unique<JournalServiceQorvexTel>(nullptr), m_database,
                                          m_liveCalls, m_pool, m_timerSource)) {
    m_line->start();
    m_journal = dynamic_cast<JournalServiceIfc*>(m_line->journal());
    m_observer.setDuring([this](const journaltest::Callback& callback) {
        if (const auto* missed = std::get_if<MissedCallItem>(&callback.item)) {
            const std::lock_guard lock(m_mutex);
            for (const auto& call : missed->getMissedCallInfoList()) {
                m_missed.insert(call.getNumber());
            }
            m_changed.notify_all();
        }
    });
    m_journal->subscribeForJournalEvents(&m_observer);
}

PhoneUnderTest::~PhoneUnderTest() {
    m_journal->unsubscribeForJournalEvents(&m_observer);
    m_line->stop();
}

bool PhoneUnderTest::awaitMissed(const std::string& number, std::chrono::milliseconds timeout) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, timeout, [&] { return m_missed.contains(number); });
}

void PhoneUnderTest::clear() {
    {
        const std::lock_guard lock(m_mutex);
        m_missed.clear();
    }
    m_journal->deleteAllCalls();
}

Entries PhoneUnderTest::entriesWithout(const std::string& number) {
    m_observer.clear();
    Entries entries;
    addEntries<MissedCallItem>(*m_journal, number, entries);
    addEntries<DialledCallItem>(*m_journal, number, entries);
    addEntries<ReceivedCallItem>(*m_journal, number, entries);
    addEntries<ForwardedCallItem>(*m_journal, number, entries);
    return entries;
}

}  // namespace reliability
