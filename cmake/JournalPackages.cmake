# The packages, all from Debian 12 (packaging/debian-packages/; docs/dependencies.md has the purpose of each).
# Targets to link: asio_standalone, pugixml::pugixml, SQLiteCpp, nlohmann_json::nlohmann_json, toml_pp,
# phonenumber, geocoding, ICU::uc, ICU::i18n, restinio_http, prometheus_core, CLI11::CLI11, CURL::libcurl, OpenSSL::Crypto, qrencode, ZLIB::ZLIB, and for tests GTest::gtest,
# GTest::gmock, rapidcheck, rapidcheck_gtest, benchmark::benchmark, benchmark::benchmark_main.

set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)
find_package(Boost 1.74 REQUIRED) # headers only: bind
find_package(ICU REQUIRED COMPONENTS uc i18n)
find_package(pugixml REQUIRED)
find_package(SQLiteCpp REQUIRED)
find_package(fmt REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(CLI11 REQUIRED)
find_package(CURL 7.88 REQUIRED)
find_package(OpenSSL 3 REQUIRED)
find_package(ZLIB REQUIRED)

# Standalone Asio has no CMake package. Every source that uses it needs the same definitions, or one program has two
# different layouts of the same class. Define them here only.
find_path(JOURNAL_ASIO_INCLUDE_DIR asio.hpp REQUIRED)
mark_as_advanced(JOURNAL_ASIO_INCLUDE_DIR)
add_library(asio_standalone INTERFACE)
target_include_directories(asio_standalone SYSTEM INTERFACE "${JOURNAL_ASIO_INCLUDE_DIR}")
target_compile_definitions(asio_standalone INTERFACE
    ASIO_STANDALONE
    ASIO_HAS_STD_CHRONO
    ASIO_DISABLE_STD_STRING_VIEW)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 17)
    # This clang compiles coroutines, but Asio does not detect it.
    target_compile_definitions(asio_standalone INTERFACE ASIO_HAS_CO_AWAIT ASIO_HAS_STD_COROUTINE)
endif()
target_link_libraries(asio_standalone INTERFACE Threads::Threads)

add_library(toml_pp INTERFACE)
find_package(tomlplusplus QUIET)
if(TARGET tomlplusplus::tomlplusplus)
    target_link_libraries(toml_pp INTERFACE tomlplusplus::tomlplusplus)
else()
    find_path(JOURNAL_TOML_INCLUDE_DIR toml++/toml.h REQUIRED)
    mark_as_advanced(JOURNAL_TOML_INCLUDE_DIR)
    target_include_directories(toml_pp SYSTEM INTERFACE "${JOURNAL_TOML_INCLUDE_DIR}")
endif()

# libphonenumber has no CMake package.
find_path(JOURNAL_PHONENUMBER_INCLUDE_DIR phonenumbers/phonenumberutil.h REQUIRED)
find_library(JOURNAL_PHONENUMBER_LIBRARY phonenumber REQUIRED)
find_library(JOURNAL_GEOCODING_LIBRARY geocoding REQUIRED)
mark_as_advanced(JOURNAL_PHONENUMBER_INCLUDE_DIR JOURNAL_PHONENUMBER_LIBRARY JOURNAL_GEOCODING_LIBRARY)
add_library(phonenumber INTERFACE)
target_include_directories(phonenumber SYSTEM INTERFACE "${JOURNAL_PHONENUMBER_INCLUDE_DIR}")
target_link_libraries(phonenumber INTERFACE "${JOURNAL_PHONENUMBER_LIBRARY}")
add_library(geocoding INTERFACE)
target_link_libraries(geocoding INTERFACE phonenumber ICU::uc "${JOURNAL_GEOCODING_LIBRARY}")

# libqrencode has no CMake package.
find_path(JOURNAL_QRENCODE_INCLUDE_DIR qrencode.h REQUIRED)
find_library(JOURNAL_QRENCODE_LIBRARY qrencode REQUIRED)
mark_as_advanced(JOURNAL_QRENCODE_INCLUDE_DIR JOURNAL_QRENCODE_LIBRARY)
add_library(qrencode INTERFACE)
target_include_directories(qrencode SYSTEM INTERFACE "${JOURNAL_QRENCODE_INCLUDE_DIR}")
target_link_libraries(qrencode INTERFACE "${JOURNAL_QRENCODE_LIBRARY}")

# RESTinio needs the definitions of asio_standalone. Its headers compile slowly, so only one source includes them.
find_path(JOURNAL_RESTINIO_INCLUDE_DIR restinio/all.hpp REQUIRED)
find_library(JOURNAL_HTTP_PARSER_LIBRARY http_parser REQUIRED)
mark_as_advanced(JOURNAL_RESTINIO_INCLUDE_DIR JOURNAL_HTTP_PARSER_LIBRARY)
add_library(restinio_http INTERFACE)
target_include_directories(restinio_http SYSTEM INTERFACE "${JOURNAL_RESTINIO_INCLUDE_DIR}")
target_link_libraries(restinio_http INTERFACE asio_standalone fmt::fmt "${JOURNAL_HTTP_PARSER_LIBRARY}")

# Only the core of prometheus-cpp, without its CMake package, which requires a web server and curl.
find_path(JOURNAL_PROMETHEUS_INCLUDE_DIR prometheus/registry.h REQUIRED)
find_library(JOURNAL_PROMETHEUS_LIBRARY prometheus-cpp-core REQUIRED)
mark_as_advanced(JOURNAL_PROMETHEUS_INCLUDE_DIR JOURNAL_PROMETHEUS_LIBRARY)
add_library(prometheus_core INTERFACE)
target_include_directories(prometheus_core SYSTEM INTERFACE "${JOURNAL_PROMETHEUS_INCLUDE_DIR}")
target_link_libraries(prometheus_core INTERFACE "${JOURNAL_PROMETHEUS_LIBRARY}")

if(JOURNAL_TESTS)
    find_package(GTest QUIET)
    find_package(rapidcheck QUIET)
    find_package(benchmark QUIET)
    if(NOT GTest_FOUND OR NOT rapidcheck_FOUND OR NOT benchmark_FOUND)
        # ./run installs no test library. Not cached: the next configuration looks again.
        message(NOTICE "The tests are left out: GoogleTest, rapidcheck or Google Benchmark is missing (tools/setup tests)")
        set(JOURNAL_TESTS OFF)
    endif()
endif()
