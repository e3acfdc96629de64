# The one place for compile flags, and the functions with which every folder declares its target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# "address", "thread" or "realtime": the value of CAIRN_SANITIZER, set by the presets.
set(CAIRN_SANITIZER "" CACHE STRING "Sanitizer to build with: address, thread, realtime or none")

add_library(cairn_flags INTERFACE)
target_compile_options(cairn_flags INTERFACE
    -Wall -Wextra -Wshadow -Wconversion -Wnon-virtual-dtor -Werror
    # Float results are the same on every machine: no contraction, no fast-math.
    -ffp-contract=off)
if(CAIRN_SANITIZER STREQUAL "address")
    target_compile_options(cairn_flags INTERFACE -fsanitize=address,undefined
        -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(cairn_flags INTERFACE -fsanitize=address,undefined)
elseif(CAIRN_SANITIZER STREQUAL "thread")
    target_compile_options(cairn_flags INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(cairn_flags INTERFACE -fsanitize=thread)
elseif(CAIRN_SANITIZER STREQUAL "realtime")
    target_compile_options(cairn_flags INTERFACE -fsanitize=realtime -fno-omit-frame-pointer)
    target_link_options(cairn_flags INTERFACE -fsanitize=realtime)
elseif(CAIRN_SANITIZER)
    message(FATAL_ERROR "CAIRN_SANITIZER is '${CAIRN_SANITIZER}', expected address, thread, realtime or nothing")
endif()

# cairn_library(NAME SOURCES file... [LINK target...] [LINK_PRIVATE target...])
# A static library of the ladder. Headers are reached from src/.
function(cairn_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK;LINK_PRIVATE" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}/src")
    target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE cairn_flags ${arg_LINK_PRIVATE})
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
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST)
endfunction()
