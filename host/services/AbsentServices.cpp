#include "host/services/AbsentServices.h"

#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr const char* kComponent = "Host Services";

}  // namespace

bool Mobility::saveVisitorCallLog() {
    logAppUni(kComponent, __FILE_NAME__, 5, __LINE__,
              "There is no server for visitors: the call log stays on this phone");
    return true;
}

void UnifiedCommunications::refreshJournal() {
    logAppUni(kComponent, __FILE_NAME__, 6, __LINE__,
              "There is no unified-communications client that could refresh its view");
}

}  // namespace host
