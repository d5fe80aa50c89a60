#include <gtest/gtest.h>

#include <string>

#include "host/framework/OperaTextAdapter.h"
#include "platform/framework/Method.h"

namespace host {
namespace {

TEST(OperaTextAdapter, EncodesAMethodAsDocumentedAndDecodesItForAnyBytes) {
    Method method("getContactList", Method::Kind::eRequest, "client-7");
    method.addStringParameter("filter", "Ann M", Method::ParameterKind::eIn);
    method.addStringParameter("contactList", "<Entry>\n100%", Method::ParameterKind::eOut);
    EXPECT_EQ(OperaTextAdapter().encode(method),
              "request getContactList client-7\nin filter Ann%20M\nout contactList <Entry>%0A100%25");

    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    for (const std::string& text : {bytes, std::string()}) {
        Method read;
        method = Method(text, Method::Kind::eNotification, text);
        method.addStringParameter(text, text, Method::ParameterKind::eOut);
        EXPECT_TRUE(OperaTextAdapter().decode(OperaTextAdapter().encode(method), read));
        EXPECT_EQ(read.getName() + "|" + read.getSource(), text + "|" + text);
        EXPECT_EQ(read.getStringParameters().at(0).name + read.getStringParameters().at(0).value,
                  text + text);
        EXPECT_EQ(OperaTextAdapter().encode(read), OperaTextAdapter().encode(method));
    }
}

TEST(OperaTextAdapter, RefusesAnInvalidMessageAndLeavesTheMethodUnchanged) {
    for (const char* const text :
         {"", "request", "request name", "request name source more", "order name source",
          "request na%2 source", "request na%2G source", "request name source%",
          "request name source\nin only", "request name source\ninto name value",
          "request name source\n\nin name value"}) {
        Method method("before", Method::Kind::eNotification, "me");
        EXPECT_FALSE(OperaTextAdapter().decode(text, method)) << text;
        EXPECT_EQ(method.getName(), "before");
    }
}

}  // namespace
}  // namespace host
