#include "host/config/Endpoint.h"

#include <gtest/gtest.h>

namespace {

using host::Endpoint;
using host::parseEndpoint;

TEST(Endpoint, IsReadAndWrittenAlike) {
    const struct {
        const char* text = nullptr;
        Endpoint endpoint;
    } cases[] = {
        {"127.0.0.1:8080", {"127.0.0.1", 8080}},
        {"localhost:0", {"localhost", 0}},
        {"0.0.0.0:65535", {"0.0.0.0", 65535}},
        {"[::1]:4242", {"::1", 4242}},
        {"switch.example.org:1040", {"switch.example.org", 1040}},
    };
    for (const auto& each : cases) {
        const auto read = parseEndpoint(each.text);
        ASSERT_TRUE(read) << each.text;
        EXPECT_EQ(*read, each.endpoint) << each.text;
        EXPECT_EQ(read->text(), each.text);
    }
}

TEST(Endpoint, IsNoOtherText) {
    for (const char* const text :
         {"", ":", ":80", "127.0.0.1", "127.0.0.1:", "127.0.0.1:65536", "127.0.0.1:-1", "127.0.0.1:+1",
          "127.0.0.1:80x", "127.0.0.1: 80", "a b:80", "::1:80", "[::1]", "[]:80", "[::1:80",
          "http://127.0.0.1:80", "[[::1]]:80"}) {
        EXPECT_FALSE(parseEndpoint(text)) << text;
    }
}

}  // namespace
