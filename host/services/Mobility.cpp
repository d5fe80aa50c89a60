#include "host/services/Mobility.h"

#include "platform/logging/Logging.h"

namespace host {

bool Mobility::saveVisitorCallLog() {
    logAppUni("Host Services", __FILE_NAME__, 5, __LINE__,
              "There is no server for visitors: the call log stays on this phone");
    return true;
}

}  // namespace host
