#pragma once

#include <string>
#include <vector>

#include "journalservice/ObserverNotifier.h"
#include "platform/journal-library/CallListDatabaseAdapter.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/base/PlatformServices.h"
#include "src/JournalService/list-changes/EntryReplacement.h"
#include "src/JournalService/list-changes/ListDeletion.h"
#include "src/JournalService/list-changes/MissedCallUpdates.h"
#include "src/JournalService/lists/CallLogRequests.h"
#include "src/JournalService/lists/JournalLists.h"
#include "src/JournalService/lists/ListLoader.h"
#include "src/JournalService/lists/ListPersistence.h"
#include "src/JournalService/lists/ListQueries.h"
#include "tests/support/FakeCstaService.h"
#include "tests/support/FakeDataAccess.h"
#include "tests/support/ItemBuilders.h"
#include "tests/support/ListsReader.h"
#include "tests/support/RecordingObserver.h"

namespace journaltest {

/// The journal's lists with all that they need, between a database, a switch and one observer that are fakes.
///
/// The observer reads all lists inside each callback and so does the switch inside each call-log request: an
/// operation that holds a list's lock while it notifies either of them hangs, and the test fails by its time
/// limit. The captured log is empty once the fixture stands. Tests use it from one thread unless they say
/// otherwise.
class ListsFixture {
public:
    ListsFixture();
    ListsFixture(const ListsFixture&) = delete;
    ListsFixture& operator=(const ListsFixture&) = delete;
    ~ListsFixture() = default;

    void phoneIs(const std::string& softwareType, int systemIdentifier = 0);
    /// Puts rows into the database and loads them; then forgets that it did.
    void startWith(const std::vector<MissedCallItem>& missed,
                   const std::vector<DialledCallItem>& dialled = {},
                   const std::vector<ReceivedCallItem>& received = {},
                   const std::vector<ForwardedCallItem>& forwarded = {},
                   const std::vector<CallBackItem>& callBacks = {});
    void load() { loader.load(); }
    /// Forgets requests and callbacks, not the lists.
    void forget();

    // Updates and requests since then, as one text each.
    /// What the observer heard: "missedCount(1); missed(m1, 11, 2); callBacksCount(0)". Of a list's update
    /// the item's entry id, the entry id that came with it, and the action; "-" for none.
    [[nodiscard]] std::string heard() const { return observer.heard(); }
    /// The requests that changed the database, as `textOf` says them: "write MissedCalls 11; delete
    /// ReceivedCalls all".
    [[nodiscard]] std::string written() const;
    /// The tables that were read: "MissedCalls DialledCalls".
    [[nodiscard]] std::string read() const;
    /// The call-log requests: "one 1 4711 2026-...; all 4; group 3 4711 1 text".
    [[nodiscard]] std::string sent() const;

    /// The entry ids of all lists in their order: "m1 m2 d1".
    [[nodiscard]] std::string entryIds();
    /// Every field of every item as text, sorted: once as the lists hold it, once as the database does.
    [[nodiscard]] Texts listContents();
    [[nodiscard]] Texts databaseContents() const;

    template <typename Item>
    [[nodiscard]] std::vector<Item> items() {
        const auto access = lists.read<Item>();
        return {access->begin(), access->end()};
    }

    FakeDataAccess database;
    FakeCstaService exchange;
    CallListDatabaseAdapter adapter;
    journal::PhoneSettings settings;
    journal::PlatformServices platform;
    journal::CallLogRequests requests{platform, settings, nullptr};
    /// Writes that the database gave a unique id.
    int writes = 0;
    journal::ListPersistence persistence{adapter, [this] { ++writes; }};
    ObserverNotifier notifier;
    journal::JournalLists lists{persistence, requests, notifier};
    journal::ListQueries queries{lists};
    journal::ListDeletion deletion{settings, lists};
    journal::EntryReplacement replacement{settings, lists};
    journal::MissedCallUpdates missedCallUpdates{lists};
    journal::ListLoader loader{settings, adapter, lists};
    ListsReader reader{lists};
    RecordingObserver observer{[this](const Callback&) { readAllLists(reader); }};
};

}  // namespace journaltest
