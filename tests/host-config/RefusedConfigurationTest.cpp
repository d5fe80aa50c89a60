#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "host/config/Configuration.h"

namespace {

using host::Configuration;
using host::ConfigurationError;
using testing::HasSubstr;
using testing::StartsWith;

struct Case {
    const char* name;
    const char* toml;
    const char* place;  // how the message begins: file, line, key
    const char* words;  // what it must say
};

void PrintTo(const Case& each, std::ostream* out) {
    *out << each.name;
}

class RefusedConfiguration : public testing::TestWithParam<Case> {};

TEST_P(RefusedConfiguration, NamesFileLineKeyAndWhatIsWrong) {
    try {
        static_cast<void>(Configuration::parse(GetParam().toml, "t.toml"));
        FAIL() << "was accepted";
    } catch (const ConfigurationError& error) {
        EXPECT_THAT(error.what(), StartsWith(GetParam().place));
        EXPECT_THAT(error.what(), HasSubstr(GetParam().words));
    }
}

constexpr Case kCases[] = {
    {"no_toml", "[line]\ndevice = \n", "t.toml:2: ", ""},
    {"no_utf8", "[line]\ndevice = \"\xff\"\n", "t.toml:2: ", ""},
    {"twice", "[line]\ndevice = \"1\"\ndevice = \"2\"\n", "t.toml:3: ", "device"},
    {"unknown_section", "\n[swich]\nport = 1\n",
     "t.toml:2: swich: ", "known here: api, data, digits, line, log, management, switch"},
    {"unknown_key", "[switch]\nhost = \"a\"\nprot = 1\n",
     "t.toml:3: switch.prot: ", "known here: edition, host, port"},
    {"unknown_key_of_a_line", "[line]\ndevice = \"1\"\nnumber = \"2\"\n",
     "t.toml:3: line.number: ", "known here: bluetooth, device, shared"},
    {"unknown_key_of_a_shared_device", "[[line.shared]]\ndevice = \"1\"\nlog = true\n",
     "t.toml:3: line.shared.log: ", "log-missed-calls"},
    {"key_outside_a_section", "device = \"1\"\n", "t.toml:1: device: ", "known here"},
    {"section_is_a_value", "\nswitch = \"pbx\"\n", "t.toml:2: switch: ", "[switch]"},
    {"section_in_double_brackets", "[[api]]\nauth = \"none\"\n", "t.toml:1: api: ", "[api]"},
    {"line_is_a_value", "line = 1\n", "t.toml:1: line: ", "[[line]]"},
    {"line_is_an_empty_list", "line = []\n", "t.toml:1: line: ", "[[line]]"},
    {"two_lines", "[[line]]\ndevice = \"1\"\n[[line]]\ndevice = \"2\"\n",
     "t.toml:3: line: ", "serves one line"},
    {"device_is_a_number", "[line]\ndevice = 2001\n", "t.toml:2: line.device: ", "quotation marks"},
    {"device_is_empty", "[line]\ndevice = \"\"\n", "t.toml:2: line.device: ", "must not be empty"},
    {"shared_device_without_device", "[line]\n[[line.shared]]\nlog-missed-calls = true\n",
     "t.toml:2: line.shared.device: ", "must not be empty"},
    {"shared_device_twice", "[[line.shared]]\ndevice = \"7\"\n[[line.shared]]\ndevice = \"7\"\n",
     "t.toml:4: line.shared.device: ", "\"7\" is named already"},
    {"own_device_shared", "[[line.shared]]\ndevice = \"2001\"\n",
     "t.toml:2: line.shared.device: ", "named already"},
    {"flag_is_a_text", "[[line.shared]]\ndevice = \"7\"\nlog-missed-calls = \"yes\"\n",
     "t.toml:3: line.shared.log-missed-calls: ", "true or false"},
    {"host_is_empty", "[switch]\nhost = \"\"\n", "t.toml:2: switch.host: ", "must not be empty"},
    {"port_is_a_text", "[switch]\nport = \"4242\"\n",
     "t.toml:2: switch.port: ", "whole number from 1 to 65535"},
    {"port_0", "[switch]\nport = 0\n", "t.toml:2: switch.port: ", "from 1 to 65535"},
    {"port_65536", "[switch]\nport = 65536\n", "t.toml:2: switch.port: ", "from 1 to 65535"},
    {"port_is_a_fraction", "[switch]\nport = 4242.0\n", "t.toml:2: switch.port: ", "whole number"},
    {"edition_unknown", "[switch]\nedition = \"ed7\"\n",
     "t.toml:2: switch.edition: ", "\"ed3\", \"ed4\", \"ed5\", \"ed6\""},
    {"session_unknown", "[switch]\nsession = \"Auto\"\n",
     "t.toml:2: switch.session: ", "application-session"},
    {"tls_is_a_number", "[switch]\ntls = 0\n", "t.toml:2: switch.tls: ", "true or false"},
    {"tls_on", "[switch]\ntls = true\n", "t.toml:2: switch.tls: ", "no TLS"},
    {"pause_of_nothing", "[switch]\nreconnect-max-s = 0\n",
     "t.toml:2: switch.reconnect-max-s: ", "from 1 to 3600"},
    {"listen_without_port", "[api]\nlisten = \"127.0.0.1\"\n", "t.toml:2: api.listen: ", "ADDR:PORT"},
    {"auth_unknown", "[api]\nauth = \"password\"\n", "t.toml:2: api.auth: ", "\"token\", \"none\""},
    {"store_unknown", "[data]\nstore = \"postgresql://db\"\n",
     "t.toml:2: data.store: ", "must be \"sqlite\""},
    {"management_value_is_a_number", "[management]\n\"system-identifier\" = 2\n",
     "t.toml:2: management.system-identifier: ", "quotation marks"},
    {"management_value_is_a_section", "[management.system]\nidentifier = \"2\"\n",
     "t.toml:1: management.system: ", "quotation marks"},
    {"region_in_small_letters", "[digits]\nregion = \"de\"\n",
     "t.toml:2: digits.region: ", "two capital letters"},
    {"codes_are_a_text", "[digits]\nfeature-access-codes = \"*61\"\n",
     "t.toml:2: digits.feature-access-codes: ", "a list of texts"},
    {"code_is_a_number", "[digits]\nfeature-access-codes = [\"*61\",\n 62]\n",
     "t.toml:3: digits.feature-access-codes: ", "quotation marks"},
    {"code_is_a_name", "[digits]\nfeature-access-codes = [\"park\"]\n",
     "t.toml:2: digits.feature-access-codes: ", "digits"},
    {"code_is_empty", "[digits]\nfeature-access-codes = [\"\"]\n",
     "t.toml:2: digits.feature-access-codes: ", "digits"},
    {"level_unknown", "[log]\nlevel = \"verbose\"\n", "t.toml:2: log.level: ", "\"warning\""},
};

INSTANTIATE_TEST_SUITE_P(Files, RefusedConfiguration, testing::ValuesIn(kCases),
                         [](const testing::TestParamInfo<Case>& row) { return row.param.name; });

}  // namespace
