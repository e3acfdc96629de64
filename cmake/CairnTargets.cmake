# The one place for compile flags, and the functions with which every folder declares its target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# A loadable module shows its entry points alone; and what can't be replaced from outside, the
# compiler inlines.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# With basedir and the prefix map below, checkouts in different folders share their cache entries.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # The sloppiness is what ccache asks for where headers are precompiled.
    set(CMAKE_CXX_COMPILER_LAUNCHER env "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}"
        CCACHE_SLOPPINESS=pch_defines,time_macros "${CCACHE_PROGRAM}")
endif()

# "address", "thread", "realtime" or "fuzzer": the value of CAIRN_SANITIZER, set by the presets.
set(CAIRN_SANITIZER "" CACHE STRING
    "Sanitizer to build with: address, thread, realtime, fuzzer or none")

# Halves the time of the sanitizers' builds. The other builds go without, so that an include that is
# missing shows.
option(CAIRN_PRECOMPILE "Precompile the headers of the standard library and of the test library" OFF)

add_library(cairn_flags INTERFACE)
target_compile_options(cairn_flags INTERFACE
    -Wall -Wextra -Wshadow -Wconversion -Wnon-virtual-dtor -Werror
    # Float results are the same on every machine: no contraction, no fast-math.
    -ffp-contract=off
    # This compiler's version 12 sees overlaps in the standard library's string concatenation.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    # Debuggers and reports find the sources from the root of the checkout, wherever that lies.
    "-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.")
if(CAIRN_SANITIZER STREQUAL "address")
    target_compile_options(cairn_flags INTERFACE -fsanitize=address,undefined
        -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(cairn_flags INTERFACE -fsanitize=address,undefined)
elseif(CAIRN_SANITIZER STREQUAL "thread")
    target_compile_options(cairn_flags INTERFACE -fsanitize=thread -fno-omit-frame-pointer
        # Instrumented, the same concatenations seem to leave their arrays.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds>)
    target_link_options(cairn_flags INTERFACE -fsanitize=thread)
elseif(CAIRN_SANITIZER STREQUAL "realtime")
    target_compile_options(cairn_flags INTERFACE -fsanitize=realtime -fno-omit-frame-pointer)
    target_link_options(cairn_flags INTERFACE -fsanitize=realtime)
elseif(CAIRN_SANITIZER STREQUAL "fuzzer")
    target_compile_options(cairn_flags INTERFACE -fsanitize=fuzzer-no-link,address,undefined
        -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(cairn_flags INTERFACE -fsanitize=address,undefined)
elseif(CAIRN_SANITIZER)
    message(FATAL_ERROR "CAIRN_SANITIZER is '${CAIRN_SANITIZER}', expected address, thread, realtime, fuzzer or nothing")
endif()

# Standard headers that most sources reach.
set(CAIRN_COMMON_HEADERS <algorithm> <atomic> <cmath> <cstring> <functional> <map> <memory> <string>
    <string_view> <unordered_map> <utility> <vector>)

# cairn_library(NAME SOURCES file... [LINK target...] [LINK_PRIVATE target...])
# A static library of the ladder. Headers are reached from src/.
function(cairn_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK;LINK_PRIVATE" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}/src")
    target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE cairn_flags ${arg_LINK_PRIVATE})
    if(CAIRN_PRECOMPILE)
        target_precompile_headers(${name} PRIVATE ${CAIRN_COMMON_HEADERS})
    endif()
endfunction()

# cairn_keep_registration(NAME symbol)
# Whoever links NAME also links the object file that defines the C symbol, and with it the
# registrations that run before main; a static library would otherwise drop them unreferenced.
function(cairn_keep_registration name symbol)
    target_link_options(${name} INTERFACE "LINKER:-u,${symbol}")
endfunction()

# cairn_test(NAME SOURCES file... LINK target...)
# One test executable; ctest asks it for its cases when it runs.
function(cairn_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE ${arg_LINK} cairn_flags GTest::gtest_main)
    if(CAIRN_PRECOMPILE)
        # All test executables have the same flags, so they share one.
        if(NOT TARGET cairn_test_headers)
            file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/cairn_test_headers.cpp" CONTENT "")
            add_executable(cairn_test_headers "${CMAKE_BINARY_DIR}/cairn_test_headers.cpp")
            target_link_libraries(cairn_test_headers PRIVATE cairn_flags GTest::gtest_main)
            target_precompile_headers(cairn_test_headers PRIVATE
                <gtest/gtest.h> ${CAIRN_COMMON_HEADERS})
        endif()
        target_precompile_headers(${name} REUSE_FROM cairn_test_headers)
    endif()
    # A loaded machine may need a while to list the cases of a sanitized executable.
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60)
endfunction()
