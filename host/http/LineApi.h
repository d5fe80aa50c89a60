#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "host/access/Access.h"
#include "host/http/events/EventFeed.h"
#include "host/http/messages/Router.h"
#include "host/http/resources/StatusResource.h"

namespace host {

class CallControlIfc;
class Database;
class Dialling;
class LocalManagement;
class NumberTexts;
class ObserverFan;
class Phonebook;
class StoredEntries;
class StoredLists;

/// The components of one line that the HTTP API serves. All are borrowed and outlive its `LineApi`.
struct LineBackend {
    std::string line;
    LocalManagement& management;
    Phonebook& phonebook;
    Database& database;
    const StoredLists& storedLists;
    StoredEntries& storedEntries;
    ObserverFan& observers;
    CallControlIfc& callControl;
    const Dialling& dialling;
    NumberTexts& numbers;
    std::function<LineState()> lineState;
    /// The version of the program.
    std::string version{};
};

/// The parts of the server that the API of a line uses. Thread-safe.
struct LineApiServer {
    EventFeed::Post post;
    EventFeed::PostLater postLater;
    EventFeed::RunAside runAside;
    /// Returns a function that returns false once a stream with this access must end; empty for one that
    /// never must.
    std::function<std::function<bool()>(const Access&)> mayGoOn;
    /// The stream of all lines: opens one for a request, and reads the events of the line with that device.
    std::function<HttpResponse(const HttpRequest&)> allEvents;
    std::function<EventFeed::Reader(const std::string&)> readerOf;
};

/// The resources of one line with their routes, and its event stream.
///
/// Thread-safe after construction, except that one owner starts and stops it.
class LineApi {
public:
    LineApi(LineBackend backend, LineApiServer server);
    /// Calls `stop`.
    ~LineApi();
    LineApi(const LineApi&) = delete;
    LineApi& operator=(const LineApi&) = delete;

    /// Begins to observe the journal.
    void start();
    /// Ends that, the imports and the event streams. Call when no request is carried out, on another thread
    /// than the loop's. Idempotent.
    void stop();
    /// Ends the event streams, later ones as soon as they begin.
    void endStreams();

    /// The first call makes the resources.
    [[nodiscard]] const Router& router() const;

    /// Sends a "resync" event to all streams; their clients read the lists again. Call after an operation
    /// that may have changed the lists without a notification of observers.
    void resync();
    /// Sends a "liveCallsUpdate" event to all streams, with the live calls as they are then, not more often
    /// than ten times a second. Call after each change of the live calls. Does not block.
    void liveCallsChanged();

    [[nodiscard]] std::size_t streamCount() const noexcept;

    // Loop thread only; see `EventFeed`.
    void keepAlive();
    [[nodiscard]] bool endRefused();

private:
    class Impl;
    const std::unique_ptr<Impl> m_impl;
};

}  // namespace host
