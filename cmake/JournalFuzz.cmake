# The build of a fuzz target.

if(JOURNAL_FUZZ AND NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "JOURNAL_FUZZ needs clang: use the preset fuzz")
endif()

# All fuzz targets.
add_custom_target(fuzz_targets)

# journal_fuzz(<name> SOURCES a.cpp ... [LIBS ...])
#   Adds the program <name>_fuzz from sources with one LLVMFuzzerTestOneInput. With JOURNAL_FUZZ libFuzzer runs it, else
#   fuzz/support/ReplayDriver.cpp. Its inputs are fuzz/corpus/<name> and fuzz/dictionaries/<name>.dict.
function(journal_fuzz name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBS")
    journal_refuse_leftovers(journal_fuzz ${name} "${arg_UNPARSED_ARGUMENTS}")
    if(JOURNAL_FUZZ)
        journal_executable(${name}_fuzz SOURCES ${arg_SOURCES} LIBS ${arg_LIBS} fuzz_properties)
        target_link_options(${name}_fuzz PRIVATE -fsanitize=fuzzer)
    else()
        journal_executable(${name}_fuzz SOURCES ${arg_SOURCES} LIBS ${arg_LIBS} fuzz_properties fuzz_driver)
    endif()
    add_dependencies(fuzz_targets ${name}_fuzz)
endfunction()
