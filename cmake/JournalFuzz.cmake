# The build of a fuzz target.

if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "JOURNAL_FUZZ needs clang: use the preset fuzz")
endif()

# journal_fuzz(<name> SOURCES a.cpp ... [LIBS ...])
#   Adds a program with one LLVMFuzzerTestOneInput. Run it as `build/fuzz/bin/<name> CORPUS_DIRECTORY`.
function(journal_fuzz name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBS")
    journal_refuse_leftovers(journal_fuzz ${name} "${arg_UNPARSED_ARGUMENTS}")
    add_executable(${name} ${arg_SOURCES})
    journal_configure_target(${name})
    target_link_libraries(${name} PRIVATE ${arg_LIBS})
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
endfunction()
