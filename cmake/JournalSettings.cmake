# The settings of every target of the project.

option(JOURNAL_TESTS "Build the tests" ON)
option(JOURNAL_FUZZ "Link the fuzz targets with libFuzzer (clang only)" OFF)
option(JOURNAL_PCH "Precompile the headers that many sources share" ON)
set(JOURNAL_SANITIZE "" CACHE STRING "The value of -fsanitize=, for example address,undefined")

get_property(multi_config GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(NOT multi_config AND NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Debug CACHE STRING "Debug or RelWithDebInfo" FORCE)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON) # static libraries are linked into libjournalservice.so
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")

if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    # Use the linker of the same release if it is installed: bfd takes seconds per program with sanitizers.
    string(REGEX MATCH "^[0-9]+" clang_major "${CMAKE_CXX_COMPILER_VERSION}")
    find_program(JOURNAL_LLD NAMES ld.lld-${clang_major})
    mark_as_advanced(JOURNAL_LLD)
    if(JOURNAL_LLD)
        add_link_options(-fuse-ld=lld)
    endif()
endif()

if(JOURNAL_SANITIZE)
    add_compile_options(-fsanitize=${JOURNAL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
    add_link_options(-fsanitize=${JOURNAL_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND JOURNAL_SANITIZE MATCHES "undefined")
        # Both checks compare the addresses of type information. With hidden visibility, the service library and the
        # program have separate copies, so the checks would report every call between them.
        add_compile_options(-fno-sanitize=vptr,function)
        add_link_options(-fno-sanitize=vptr,function)
    endif()
endif()

# Use ccache if it is installed. Its settings are part of the compile command, so that `ninja` works alike from a preset
# and from a shell. ccache needs this sloppiness to cache sources with precompiled headers. NOHASHDIR lets the build
# directories of one checkout share results.
find_program(JOURNAL_CCACHE NAMES ccache)
mark_as_advanced(JOURNAL_CCACHE)
if(JOURNAL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_COMMAND}" -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        CCACHE_NOHASHDIR=1
        "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}"
        "${JOURNAL_CCACHE}")
    if(JOURNAL_PCH)
        if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
            add_compile_options(-fpch-preprocess)
        elseif(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
            add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
        endif()
    endif()
endif()
