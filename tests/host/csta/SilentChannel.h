#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/csta-wire/WireDocument.h"
#include "host/csta/requests/RequestChannel.h"

namespace linktest {

inline host::WireDocument parsed(const std::string& xml) {
    std::string fault;
    return host::WireDocument::parse(xml, fault).value();
}

/// Sends no message: the test responds to the requests, by their positions.
class SilentChannel : public host::RequestChannel {
public:
    [[nodiscard]] bool isReady() const override { return true; }
    void send(const std::string& xml, host::PendingRequests::Handler handler) override {
        lastXml = xml;
        handlers.push_back(std::move(handler));
    }
    void respond(std::size_t request, const std::string& xml) const {
        const host::WireDocument document = parsed(xml);
        handlers.at(request)({.kind = host::SwitchResponse::Kind::eResponse,
                              .document = &document,
                              .category = {},
                              .value = {}});
    }

    std::string lastXml;
    std::vector<host::PendingRequests::Handler> handlers;
};

}  // namespace linktest
