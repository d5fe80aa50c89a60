# The packages, all from Debian 12 (packaging/debian-packages.txt; docs/dependencies.md says what each is for).
# Targets to link: asio_standalone, pugixml::pugixml, SQLiteCpp, spdlog::spdlog, nlohmann_json::nlohmann_json, toml_pp,
# CLI11::CLI11, and for tests GTest::gtest, GTest::gmock, rapidcheck, rapidcheck_gtest.

set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)
find_package(Boost 1.74 REQUIRED) # headers only: bind
find_package(pugixml REQUIRED)
find_package(SQLiteCpp REQUIRED)
find_package(fmt REQUIRED)
find_package(spdlog REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(CLI11 REQUIRED)

# Standalone Asio has no CMake package. All who use it must agree on these definitions, or two halves of one program hold
# different ideas of the same class; so nobody defines them anywhere else.
find_path(JOURNAL_ASIO_INCLUDE_DIR asio.hpp REQUIRED)
mark_as_advanced(JOURNAL_ASIO_INCLUDE_DIR)
add_library(asio_standalone INTERFACE)
target_include_directories(asio_standalone SYSTEM INTERFACE "${JOURNAL_ASIO_INCLUDE_DIR}")
target_compile_definitions(asio_standalone INTERFACE
    ASIO_STANDALONE
    ASIO_HAS_STD_CHRONO
    ASIO_DISABLE_STD_STRING_VIEW)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 17)
    # This clang compiles coroutines but does not say so in the way that Asio asks; g++ needs no telling.
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

if(JOURNAL_TESTS)
    find_package(GTest REQUIRED)
    find_package(rapidcheck REQUIRED)
endif()
