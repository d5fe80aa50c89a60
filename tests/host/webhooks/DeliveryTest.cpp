#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "host/webhooks/DeliveryBackoff.h"
#include "host/webhooks/Signature.h"

namespace {

using std::chrono::seconds;

TEST(Signature, IsTheOneThatOtherProgramsCompute) {
    // printf '1795411325.{"id":"1"}' | openssl dgst -sha256 -hmac 'a secret'
    EXPECT_EQ(host::signatureOf("a secret", 1795411325, R"({"id":"1"})"),
              "sha256=e6a2a13e6668962ca0c9a1ddc57c3ece5ec88fa6f1387a993308317d5bdcc375");
}

TEST(DeliveryBackoff, DoublesUpToAnHourAndBeginsAnewAfterASuccess) {
    host::DeliveryBackoff backoff;
    auto now = host::DeliveryBackoff::Clock::now();
    EXPECT_TRUE(backoff.isDue(now));
    std::vector<seconds::rep> pauses;
    for (int attempt = 0; attempt < 14; ++attempt) {
        const seconds pause = backoff.failed(now);
        EXPECT_FALSE(backoff.isDue(now + pause - std::chrono::milliseconds(1)));
        now += pause;
        EXPECT_TRUE(backoff.isDue(now));
        pauses.push_back(pause.count());
    }
    EXPECT_EQ(pauses,
              (std::vector<seconds::rep>{1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048, 3600, 3600}));
    backoff.succeeded();
    EXPECT_FALSE(backoff.hasFailed());
    EXPECT_EQ(backoff.failed(now), seconds(1));
}

}  // namespace
