#include "host/framework/HostFrameworkContext.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/framework/Proxy.h"

namespace host {
namespace {

class SilentProxy final : public Proxy {
public:
    void initProxy(ProxyRequest&) override {}
};

Proxy* find(HostFrameworkContext& context, std::string interfaceName, std::string clientName) {
    return context.findProxy(interfaceName, clientName);
}

TEST(HostFrameworkContext, FindsAProxyByInterfaceAndClientTogether) {
    HostFrameworkContext context;
    SilentProxy first;
    SilentProxy second;
    EXPECT_TRUE(context.registerProxy("JournalServiceObserverIfc", "client-1", first));
    EXPECT_TRUE(context.registerProxy("JournalServiceObserverIfc", "client-2", second));
    EXPECT_EQ(find(context, "JournalServiceObserverIfc", "client-1"), &first);
    EXPECT_EQ(find(context, "JournalServiceObserverIfc", "client-2"), &second);
    EXPECT_EQ(find(context, "ContactObserverIfc", "client-1"), nullptr);
    EXPECT_EQ(find(context, "JournalServiceObserverIfc", "client-3"), nullptr);
}

TEST(HostFrameworkContext, KeepsTheFirstProxyOfAClientUntilItIsRemoved) {
    HostFrameworkContext context;
    SilentProxy first;
    SilentProxy second;
    EXPECT_TRUE(context.registerProxy("Ifc", "client-1", first));
    EXPECT_FALSE(context.registerProxy("Ifc", "client-1", second));
    EXPECT_EQ(find(context, "Ifc", "client-1"), &first);
    context.removeProxy("Ifc", "client-1");
    EXPECT_EQ(find(context, "Ifc", "client-1"), nullptr);
    EXPECT_TRUE(context.registerProxy("Ifc", "client-1", second));
}

TEST(HostFrameworkContext, KnowsTheOperaTextProtocolAndNoOther) {
    HostFrameworkContext context;
    std::string opera = "opera_text";
    std::string other = "opera_binary";
    EXPECT_NE(context.findProtocolAdapter(opera), nullptr);
    EXPECT_EQ(context.findProtocolAdapter(other), nullptr);
}

}  // namespace
}  // namespace host
