#include "host/framework/OperaTextAdapter.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <vector>

#include "platform/framework/Method.h"

namespace host {
namespace {

bool sameMethod(const Method& a, const Method& b) {
    const auto& left = a.getStringParameters();
    const auto& right = b.getStringParameters();
    bool same = a.getName() == b.getName() && a.getKind() == b.getKind() && a.getSource() == b.getSource() &&
                left.size() == right.size();
    for (std::size_t index = 0; same && index < left.size(); ++index) {
        same = left[index].name == right[index].name && left[index].value == right[index].value &&
               left[index].kind == right[index].kind;
    }
    return same;
}

TEST(OperaTextAdapter, WritesWhatItsDescriptionShows) {
    Method method("getContactList", Method::Kind::eRequest, "client-7");
    method.addStringParameter("filter", "Ann M", Method::ParameterKind::eIn);
    method.addStringParameter("contactList", "<Entry>\n100%", Method::ParameterKind::eOut);
    EXPECT_EQ(OperaTextAdapter().encode(method),
              "request getContactList client-7\nin filter Ann%20M\nout contactList <Entry>%0A100%25");
}

RC_GTEST_PROP(OperaTextAdapter, ReadsBackWhatItWroteWhateverTheBytes, ()) {
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
    RC_ASSERT(sameMethod(method, read));
}

TEST(OperaTextAdapter, RefusesWhatIsNoMessageAndLeavesTheMethodAlone) {
    const std::vector<std::string> texts{
        "",
        "request",
        "request name",
        "request name source more",
        "order name source",
        "Request name source",
        "request na%2 source",
        "request na%2G source",
        "request name source%",
        "request name source\nin only",
        "request name source\ninto name value",
        "request name source\n\nin name value",
        "<MSG method=\"2\"/>",
    };
    for (const std::string& text : texts) {
        Method method("before", Method::Kind::eNotification, "me");
        EXPECT_FALSE(OperaTextAdapter().decode(text, method)) << text;
        EXPECT_EQ(method.getName(), "before") << text;
    }
}

}  // namespace
}  // namespace host
