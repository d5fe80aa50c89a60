# Warnings for the project's code. Headers of packages are system headers, which are excluded.

include(CheckCXXCompilerFlag)

add_library(journal_warnings INTERFACE)
target_compile_options(journal_warnings INTERFACE
    -Wall
    -Wextra
    -Wpedantic
    -Wshadow
    -Wnon-virtual-dtor
    -Wold-style-cast
    -Wconversion
    -Wformat=2
    -Werror)

check_cxx_compiler_flag(-Woverloaded-virtual=1 JOURNAL_HAS_OVERLOADED_VIRTUAL_1)
if(JOURNAL_HAS_OVERLOADED_VIRTUAL_1)
    target_compile_options(journal_warnings INTERFACE -Woverloaded-virtual=1)
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # g++ 12 reports overlapping copies for `"text" + std::string` when it optimises (GCC bug 105651).
    target_compile_options(journal_warnings INTERFACE -Wno-restrict)
endif()
