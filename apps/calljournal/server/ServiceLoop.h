#pragma once

#include <functional>

#include "apps/calljournal/server/StopSignal.h"

namespace calljournal {

/// Waits on the main thread of a service until SIGINT or SIGTERM.
///
/// - SIGHUP calls `reload`, with RELOADING and READY to the service manager. From a terminal that is closed
///   it ends the service, too.
/// - `checkAlive` is called twice in each interval of the service manager's watchdog; it reports
///   `ServiceManager::alive` from the threads that do the work.
void runService(const StopSignal& signals, const std::function<void()>& reload,
                const std::function<void()>& checkAlive);

}  // namespace calljournal
