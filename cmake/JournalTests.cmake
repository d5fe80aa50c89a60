# The build and registration of tests.

if(NOT JOURNAL_TESTS)
    return()
endif()

enable_testing()
include(GoogleTest)

# Scripts need Debian's interpreter, because another python3 in the PATH does not have the modules of Debian's packages.
find_program(JOURNAL_DEBIAN_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH REQUIRED)
mark_as_advanced(JOURNAL_DEBIAN_PYTHON)

# GoogleTest's headers compile slowly. All test programs share the precompiled copy in this library.
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/cmake/journal_test_pch.cpp" CONTENT
    "// Exists only for the precompiled headers of the tests.\n")
add_library(journal_test_pch OBJECT "${PROJECT_BINARY_DIR}/cmake/journal_test_pch.cpp")
journal_configure_target(journal_test_pch)
# Compilers refuse to use a precompiled header of library code (-fPIC) in a program (-fPIE).
set_target_properties(journal_test_pch PROPERTIES POSITION_INDEPENDENT_CODE OFF)
target_compile_options(journal_test_pch PRIVATE -fPIE)
target_link_libraries(journal_test_pch PRIVATE GTest::gmock GTest::gtest Threads::Threads)
if(JOURNAL_PCH)
    target_precompile_headers(journal_test_pch PRIVATE
        <gmock/gmock.h> <gtest/gtest.h>
        <atomic> <chrono> <condition_variable> <functional> <map> <memory> <mutex> <optional> <string> <string_view>
        <thread> <vector>)
endif()

# journal_test(<name> SOURCES a.cpp ... [LIBS ...] [LABELS ...] [TIMEOUT <seconds>] [NO_PCH] [EXPORTS]
#              [DEFINITIONS X=1 ...] [PROPERTIES <test property> <value> ...])
#   Adds a GoogleTest program. Each of its tests is the ctest test <name>.<Suite>.<Test> with the label <name>. The working
#   directory is <build>/test-runs/<name>, so that relative files stay out of the sources. A test fails after TIMEOUT
#   (60 s). Use NO_PCH if LIBS have compile definitions or options that differ from those of the shared precompiled header.
#   EXPORTS is as in journal_executable.
function(journal_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "NO_PCH;EXPORTS" "TIMEOUT" "SOURCES;LIBS;LABELS;DEFINITIONS;PROPERTIES")
    journal_refuse_leftovers(journal_test ${name} "${arg_UNPARSED_ARGUMENTS}")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 60)
    endif()

    add_executable(${name} ${arg_SOURCES})
    journal_configure_target(${name})
    target_link_libraries(${name} PRIVATE ${arg_LIBS} GTest::gmock_main GTest::gmock GTest::gtest Threads::Threads)
    target_compile_definitions(${name} PRIVATE ${arg_DEFINITIONS})
    if(JOURNAL_PCH AND NOT arg_NO_PCH)
        target_precompile_headers(${name} REUSE_FROM journal_test_pch)
    endif()
    if(arg_EXPORTS)
        set_target_properties(${name} PROPERTIES ENABLE_EXPORTS ON)
    endif()

    set(directory "${PROJECT_BINARY_DIR}/test-runs/${name}")
    file(MAKE_DIRECTORY "${directory}")
    # ctest discovers the tests when it runs, not after each link, so a program that cannot list its tests is a failed test
    # and not a failed build.
    gtest_discover_tests(${name}
        TEST_PREFIX "${name}."
        WORKING_DIRECTORY "${directory}"
        DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 60
        PROPERTIES LABELS "${name};${arg_LABELS}" TIMEOUT ${arg_TIMEOUT} ${arg_PROPERTIES})
endfunction()

# journal_check(<name> (SOURCES a.cpp ... [LIBS ...] | SCRIPT <file.py>) ARGUMENTS --rounds <n> ... [TIMEOUT <seconds>])
#   Adds a reliability check (tests/reliability/checks.toml); its short form is the test reliability.<name>. With SOURCES it
#   builds the program <name>_check; a script finds the program to test in the environment variable CALLJOURNAL. The test
#   fails after TIMEOUT (60 s).
function(journal_check name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "SCRIPT;TIMEOUT" "SOURCES;LIBS;ARGUMENTS")
    journal_refuse_leftovers(journal_check ${name} "${arg_UNPARSED_ARGUMENTS}")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 60)
    endif()
    if(arg_SCRIPT)
        set(command "${JOURNAL_DEBIAN_PYTHON}" -B "${CMAKE_CURRENT_SOURCE_DIR}/${arg_SCRIPT}")
    else()
        journal_executable(${name}_check SOURCES ${arg_SOURCES} LIBS ${arg_LIBS} reliability_support)
        set(command ${name}_check)
    endif()
    add_test(NAME reliability.${name} COMMAND ${command} ${arg_ARGUMENTS})
    set_tests_properties(reliability.${name} PROPERTIES
        LABELS reliability
        TIMEOUT ${arg_TIMEOUT}
        ENVIRONMENT "CALLJOURNAL=$<TARGET_FILE:calljournal>;PYTHONPATH=${PROJECT_SOURCE_DIR}/tests/reliability/support:${PROJECT_SOURCE_DIR}/tests/apps/calljournal")
endfunction()
