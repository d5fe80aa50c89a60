#include "src/JournalService/base/PlatformServices.h"

#include <type_traits>

#include "platform/clock/ClockServiceIfc.h"
#include "platform/csta/CSTAServiceIfc.h"
#include "platform/data/DataAccessServiceIfc.h"
#include "platform/digits/DigitAnalysisServiceIfc.h"
#include "platform/directory/DirectoryServiceIfc.h"
#include "platform/framework/Context.h"
#include "platform/framework/Executable.h"
#include "platform/management/LocalMgmtIfc.h"
#include "platform/services/MobilityServiceIfc.h"
#include "platform/services/PallaxServiceIfc.h"
#include "platform/services/TeamServiceIfc.h"
#include "platform/services/UCServiceIfc.h"
#include "platform/services/WSIServiceIfc.h"
#include "src/JournalService/base/Log.h"

namespace journal {

namespace {

template <typename Interface>
Interface* castTo(Executable* service) {
    return dynamic_cast<Interface*>(service);
}

}  // namespace

Executable* PlatformServices::findService(const std::string& name) const {
    return m_context == nullptr ? nullptr : m_context->findService(name);
}

void PlatformServices::findAll(Context& context) {
    m_context = &context;
    const auto find = [this](auto*& pointer, const char* name) {
        pointer = castTo<std::remove_reference_t<decltype(*pointer)>>(findService(name));
        if (pointer == nullptr) {
            LOG_JOURNAL(2, "Cannot find %s", name);
        }
    };
    find(m_cstaService, "CSTAServiceIfc");
    find(m_dataAccessService, "DataAccessServiceIfc");
    find(m_directoryService, "DirectoryServiceIfc");
    find(m_localMgmt, "LocalMgmtIfc");
    find(m_clockService, "ClockServiceIfc");
    find(m_digitAnalysisService, "DigitAnalysisServiceIfc");
    m_mobilityService = castTo<MobilityServiceIfc>(findService("MobilityServiceIfc"));
    if (m_mobilityService == nullptr) {
        LOG_JOURNAL(2, "Cannot find mobility service");
    }
    find(m_teamService, "TeamServiceIfc");
}

namespace {

template <typename Interface>
Interface* findOnce(std::atomic<Interface*>& cached, const PlatformServices& platform, const char* name) {
    if (Interface* known = cached.load()) {
        return known;
    }
    auto* found = castTo<Interface>(platform.findService(name));
    cached.store(found);
    return found;
}

}  // namespace

UCServiceIfc* PlatformServices::ucService() {
    return findOnce(m_ucService, *this, "UCServiceIfc");
}

PallaxServiceIfc* PlatformServices::pallaxService() {
    return findOnce(m_pallaxService, *this, "PallaxServiceIfc");
}

WSIServiceIfc* PlatformServices::wsiService() {
    return findOnce(m_wsiService, *this, "WSIServiceIfc");
}

}  // namespace journal
