#include "host/sip/SipAccount.h"

#include <sys/stat.h>

#include <gtest/gtest.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "host/sip/PhoneDirectory.h"

namespace host {
namespace {

namespace fs = std::filesystem;

class SipAccountTest : public testing::Test {
protected:
    SipAccountTest() : m_directory(fs::path(testing::TempDir()) / ("sip" + std::to_string(::getpid()))) {
        fs::create_directory(m_directory);
        std::ofstream(m_directory / "secret") << "pass;word\n";
        ::chmod((m_directory / "secret").c_str(), 0600);
    }
    ~SipAccountTest() override { fs::remove_all(m_directory); }

    [[nodiscard]] SipAccount read(const std::string& keys) const {
        return readSipAccount("[sip]\n" + keys, m_directory / "account.toml");
    }
    [[nodiscard]] std::string refusal(const std::string& keys) const {
        try {
            static_cast<void>(read(keys));
        } catch (const ConfigurationError& error) {
            return error.what();
        }
        return {};
    }

    const fs::path m_directory;
};

TEST_F(SipAccountTest, TheTelephoneGetsTheAccountInPrivateFiles) {
    const SipAccount account = read(
        "account = \"sip:alice@example.org;transport=tls\"\nname = \"Alice\"\n"
        "password-file = \"secret\"\noutbound = \"sip:proxy.example.org\"\n");
    EXPECT_EQ(account.device(), "alice");
    EXPECT_EQ(phoneAccount(account),
              "\"Alice\" <sip:alice@example.org;transport=tls>;answermode=manual;regint=600;"
              "auth_pass=\"pass;word\";outbound=\"sip:proxy.example.org\"\n");

    const fs::path path = m_directory / "phone";
    {
        const PhoneDirectory directory(path);
        directory.write(account, 4444);
        EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_all);
        EXPECT_EQ(fs::status(path / "accounts").permissions(),
                  fs::perms::owner_read | fs::perms::owner_write);
        EXPECT_THROW(PhoneDirectory{path}, std::runtime_error);
    }
    EXPECT_FALSE(fs::exists(path / "accounts"));
}

TEST_F(SipAccountTest, WhatTheTelephoneCannotReadIsRefusedByItsKey) {
    std::ofstream(m_directory / "open") << "x";
    ::chmod((m_directory / "open").c_str(), 0644);
    const std::string address = "account = \"sip:alice@example.org\"\n";
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"", "sip.account: is missing"},
        {"account = \"sip:alice@example.org;transport=xyz\"", "sip.account"},
        {"account = \"sip:alice@example.org:99999\"", "sip.account"},
        {address + "outbound = \"proxy.example.org\"", "sip.outbound"},
        {address + "outbound = \"sip:\"", "sip.outbound"},
        {address + "outbound = \"sip:proxy.example.org;transport=xyz\"", "sip.outbound"},
        {"account = \"alice\"", "sip.account"},
        {"account = \"sip:alice@example.org>\\n<x\"", "sip.account"},
        {address + "name = \"A\\\"B\"", "sip.name"},
        {address + "password-file = \"absent\"", "sip.password-file"},
        {address + "password-file = \"open\"", "chmod 600"},
        {address + "audio = \"alsa\"", "sip.audio"},
        {address + "audio = \"../x,y\"", "sip.audio"},
        {address + "baresip = \"localhost\"", "sip.baresip"},
        {address + "passwort = \"x\"", "sip.passwort"},
    };
    for (const auto& [keys, expected] : rows) {
        EXPECT_NE(refusal(keys).find(expected), std::string::npos) << keys << ": " << refusal(keys);
    }
}

}  // namespace
}  // namespace host
