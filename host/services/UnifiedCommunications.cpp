#include "host/services/UnifiedCommunications.h"

#include "platform/logging/Logging.h"

namespace host {

void UnifiedCommunications::refreshJournal() {
    logAppUni("Host Services", __FILE_NAME__, 6, __LINE__,
              "There is no unified-communications client that could refresh its view");
}

}  // namespace host
