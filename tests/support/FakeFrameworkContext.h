#pragma once

#include <map>
#include <string>
#include <utility>

#include "platform/framework/FrameworkContext.h"
#include "platform/framework/Method.h"
#include "platform/framework/ProtocolAdapter.h"
#include "tests/support/Table.h"

namespace journaltest {

/// The proxies that a test registers, and the protocol "opera_text" in a plain form: a request is "request
/// NAME SOURCE", a response is the value of its first parameter. One thread.
class FakeFrameworkContext final : public FrameworkContext, public ProtocolAdapter {
public:
    /// By interface and client.
    std::map<std::pair<std::string, std::string>, Proxy*> proxies;
    /// The last response.
    mutable Method response;

    [[nodiscard]] Proxy* findProxy(std::string& interfaceName, std::string& clientName) override {
        const auto found = proxies.find({interfaceName, clientName});
        return found == proxies.end() ? nullptr : found->second;
    }
    [[nodiscard]] ProtocolAdapter* findProtocolAdapter(std::string& protocolName) override {
        return protocolName == "opera_text" ? this : nullptr;
    }
    [[nodiscard]] bool decode(const std::string& text, Method& method) const override {
        const auto words = split(text, ' ');
        const bool isRequest = words.size() == 3 && words[0] == "request";
        method = isRequest ? Method(words[1], Method::Kind::eRequest, words[2]) : method;
        return isRequest;
    }
    [[nodiscard]] std::string encode(const Method& method) const override {
        response = method;
        return method.getStringParameters().at(0).value;
    }
};

}  // namespace journaltest
