#pragma once

#include <string>

#include "host/tls/Certificates.h"
#include "host/tls/TlsFiles.h"

namespace host {

/// Logs a warning if the certificate is not valid now or expires within two weeks, and one if every user can
/// read its key. `effect` is what happens with a certificate that is not valid: "clients refuse it".
/// Thread-safe.
void warnOfCertificate(const CertificateFiles& files, const CertificateFacts& facts,
                       const std::string& effect);

}  // namespace host
