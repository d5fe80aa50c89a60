#pragma once

#include <memory>
#include <utility>

#include "platform/csta/CSTAResponse.h"

class CSTAEventIfc;
class Service;

/// One request to the switch with its result. The caller builds it, passes it to `CSTAServiceIfc::request`
/// and reads the result; one thread only.
class CSTARequest {
public:
    CSTARequest() = default;
    CSTARequest(const CSTARequest&) = delete;
    CSTARequest& operator=(const CSTARequest&) = delete;
    virtual ~CSTARequest() = default;

    /// The service that makes the request; borrowed.
    void setSourceService(Service* service) noexcept { m_source = service; }
    [[nodiscard]] Service* getSourceService() const noexcept { return m_source; }
    /// The receiver of the events that the request causes; borrowed until the monitor is stopped or the
    /// source is unregistered from the CSTA service.
    void setCSTAEventIfc(CSTAEventIfc* receiver) noexcept { m_receiver = receiver; }
    [[nodiscard]] CSTAEventIfc* getCSTAEventIfc() const noexcept { return m_receiver; }

    /// 0 is success. A request that was not carried out has another code.
    [[nodiscard]] int getResponseCode() const noexcept { return m_code; }
    /// Owned by the request; null if there is none.
    [[nodiscard]] CSTAResponse* getResponse() const noexcept { return m_response.get(); }
    void setOutcome(int code, std::unique_ptr<CSTAResponse> response) {
        m_code = code;
        m_response = std::move(response);
    }

private:
    Service* m_source = nullptr;
    CSTAEventIfc* m_receiver = nullptr;
    int m_code = -1;
    std::unique_ptr<CSTAResponse> m_response;
};
