#pragma once

#include <atomic>
#include <string>

class ClockServiceIfc;
class Context;
class CSTAServiceIfc;
class DataAccessServiceIfc;
class DigitAnalysisServiceIfc;
class DirectoryServiceIfc;
class Executable;
class LocalMgmtIfc;
class MobilityServiceIfc;
class PallaxServiceIfc;
class TeamServiceIfc;
class UCServiceIfc;
class WSIServiceIfc;

namespace journal {

/// The platform services that the journal works with. Every pointer may be null, and its user checks
/// it: a missing service is tolerated. All are borrowed from the framework and outlive the journal.
///
/// Call `findAll` once, before every other operation; the members are constant after it. The three services
/// that are found at first use are thread-safe.
class PlatformServices {
public:
    PlatformServices() = default;
    PlatformServices(const PlatformServices&) = delete;
    PlatformServices& operator=(const PlatformServices&) = delete;
    ~PlatformServices() = default;

    /// Looks up the eight services that are needed from start-up on; each missing one is logged.
    void findAll(Context& context);

    /// Returns the service registered under `name`, or null, also when there is no context yet.
    [[nodiscard]] Executable* findService(const std::string& name) const;

    // Found at first use; a look-up that fails is repeated at the next call.
    [[nodiscard]] UCServiceIfc* ucService();
    [[nodiscard]] PallaxServiceIfc* pallaxService();
    [[nodiscard]] WSIServiceIfc* wsiService();
    /// The unified-communications service when an earlier call found it; never looks it up.
    [[nodiscard]] UCServiceIfc* knownUcService() const noexcept { return m_ucService.load(); }

    Context* m_context = nullptr;
    CSTAServiceIfc* m_cstaService = nullptr;
    DataAccessServiceIfc* m_dataAccessService = nullptr;
    DirectoryServiceIfc* m_directoryService = nullptr;
    LocalMgmtIfc* m_localMgmt = nullptr;
    ClockServiceIfc* m_clockService = nullptr;
    DigitAnalysisServiceIfc* m_digitAnalysisService = nullptr;
    MobilityServiceIfc* m_mobilityService = nullptr;
    TeamServiceIfc* m_teamService = nullptr;

private:
    std::atomic<UCServiceIfc*> m_ucService{nullptr};
    std::atomic<PallaxServiceIfc*> m_pallaxService{nullptr};
    std::atomic<WSIServiceIfc*> m_wsiService{nullptr};
};

}  // namespace journal
