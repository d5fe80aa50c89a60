#pragma once

#include <memory>

#include <asio/ssl/context.hpp>

#include "host/tls/TlsFiles.h"

namespace host {

/// Returns the context for connections to a server that is checked so. Throws `TlsError`.
[[nodiscard]] std::shared_ptr<asio::ssl::context> clientContext(const ServerTrust& trust);

}  // namespace host
