#include "src/JournalService/base/CrestUserInterface.h"

#include "platform/hardware/HardwareVersion.h"
#include "src/JournalService/base/Log.h"

namespace journal {

bool isUsingCrestUX() {
    const int variant = HardwareVersion::getHWSubPlatformVariant();
    const bool crest = variant == 3 || variant == 4;
    LOG_EVENTS(5, "%s():is %susing crest UX", "isUsingCrestUX", crest ? "" : "not ");
    return crest;
}

}  // namespace journal
