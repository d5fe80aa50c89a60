#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <vector>

#include "host/framework/OperaTextAdapter.h"
#include "platform/framework/Method.h"

namespace host {
namespace {

TEST(OperaTextAdapter, EncodesAMethodAsDocumented) {
    Method method("getContactList", Method::Kind::eRequest, "client-7");
    method.addStringParameter("filter", "Ann M", Method::ParameterKind::eIn);
    method.addStringParameter("contactList", "<Entry>\n100%", Method::ParameterKind::eOut);
    EXPECT_EQ(OperaTextAdapter().encode(method),
              "request getContactList client-7\nin filter Ann%20M\nout contactList <Entry>%0A100%25");
}

RC_GTEST_PROP(OperaTextAdapter, DecodesWhatItEncodesForAnyBytes, ()) {
    const auto kinds = {Method::Kind::eRequest, Method::Kind::eResponse, Method::Kind::eNotification};
    Method method(*rc::gen::arbitrary<std::string>(), *rc::gen::elementOf(std::vector<Method::Kind>(kinds)),
                  *rc::gen::arbitrary<std::string>());
    for (const auto& [name, value] :
         *rc::gen::arbitrary<std::vector<std::pair<std::string, std::string>>>()) {
        const bool in = *rc::gen::arbitrary<bool>();
        method.addStringParameter(name, value, in ? Method::ParameterKind::eIn : Method::ParameterKind::eOut);
    }
    Method read;
    RC_ASSERT(OperaTextAdapter().decode(OperaTextAdapter().encode(method), read));
    RC_ASSERT(read.getName() == method.getName() && read.getKind() == method.getKind() &&
              read.getSource() == method.getSource());
    const auto& parameters = read.getStringParameters();
    RC_ASSERT(parameters.size() == method.getStringParameters().size());
    for (std::size_t index = 0; index < parameters.size(); ++index) {
        const auto& expected = method.getStringParameters()[index];
        RC_ASSERT(parameters[index].name == expected.name && parameters[index].value == expected.value &&
                  parameters[index].kind == expected.kind);
    }
}

TEST(OperaTextAdapter, RefusesAnInvalidMessageAndLeavesTheMethodUnchanged) {
    for (const char* const text :
         {"", "request", "request name", "request name source more", "order name source",
          "Request name source", "request na%2 source", "request na%2G source", "request name source%",
          "request name source\nin only", "request name source\ninto name value",
          "request name source\n\nin name value", "<MSG method=\"2\"/>"}) {
        Method method("before", Method::Kind::eNotification, "me");
        EXPECT_FALSE(OperaTextAdapter().decode(text, method)) << text;
        EXPECT_EQ(method.getName(), "before") << text;
    }
}

}  // namespace
}  // namespace host
