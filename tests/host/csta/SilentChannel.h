#pragma once

#include <map>
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
    [[nodiscard]] std::vector<host::WireDocument> claim(host::ReferenceKind /*kind*/,
                                                        const std::string& id) override {
        return std::move(early[id]);
    }
    void drop(host::ReferenceKind /*kind*/, const std::string& /*id*/) override {}
    void respond(std::size_t request, const std::string& xml) const {
        const host::WireDocument document = parsed(xml);
        handlers.at(request)({.kind = host::SwitchResponse::Kind::eResponse,
                              .document = &document,
                              .category = {},
                              .value = {}});
    }

    std::string lastXml;
    std::vector<host::PendingRequests::Handler> handlers;
    /// The messages that came before the reference was claimed.
    std::map<std::string, std::vector<host::WireDocument>> early;
};

}  // namespace linktest
