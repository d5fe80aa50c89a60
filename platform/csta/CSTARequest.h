#pragma once

#include <memory>
#include <utility>

#include "platform/csta/CSTAResponse.h"

class CSTAEventIfc;
class Service;

/// One request to the switch with its outcome. Built by the caller, handed to `CSTAServiceIfc::request`, read by
/// the caller afterwards; one thread only.
class CSTARequest {
public:
    CSTARequest() = default;
    CSTARequest(const CSTARequest&) = delete;
    CSTARequest& operator=(const CSTARequest&) = delete;
    virtual ~CSTARequest() = default;

    /// The service that asks; borrowed.
    void setSourceService(Service* service) noexcept { m_source = service; }
    [[nodiscard]] Service* getSourceService() const noexcept { return m_source; }
    /// Who receives the events that the request brings about; borrowed until the monitor is stopped or the CSTA
    /// service is told that the source is gone.
    void setCSTAEventIfc(CSTAEventIfc* receiver) noexcept { m_receiver = receiver; }
    [[nodiscard]] CSTAEventIfc* getCSTAEventIfc() const noexcept { return m_receiver; }

    /// 0 is success. A request that was never carried out has another code.
    [[nodiscard]] int getResponseCode() const noexcept { return m_code; }
    /// Owned by the request; null when there is none.
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
