# What every target of the project shares.

# Our own code compiles without a warning. One is off: a record written with the fields that matter
# leaves the others at their defaults, and that is the point of it.
function(tavero_warnings target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wnon-virtual-dtor
        -Woverloaded-virtual -Wold-style-cast -Wcast-align -Wformat=2
        -Wno-missing-field-initializers
        # Not where Qt's meta-object compiler gives names of its own.
        $<$<AND:$<CXX_COMPILER_ID:Clang>,$<NOT:$<BOOL:$<TARGET_PROPERTY:AUTOMOC>>>>:-Wreserved-identifier>
        # GCC 12 warns of std::string's own code when it optimises fully.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
endfunction()

# What every test includes, compiled once. Tests are not optimised: they take longer to compile than to
# run. What they test is compiled as the preset says.
if(TAVERO_TESTS)
    # Qt asks for position-independent code and PipeWire for threads, so that all are alike.
    set(TAVERO_TEST_OPTIONS -O0 -fPIC -pthread)
    add_library(TaveroTestHeaders STATIC cmake/TestHeaders.cpp)
    target_precompile_headers(TaveroTestHeaders PRIVATE
        <gmock/gmock.h> <gtest/gtest.h>
        <algorithm> <chrono> <functional> <map> <memory> <optional> <string> <variant> <vector>)
    tavero_warnings(TaveroTestHeaders)
    target_compile_options(TaveroTestHeaders PRIVATE ${TAVERO_TEST_OPTIONS})
    target_link_libraries(TaveroTestHeaders PRIVATE GTest::gmock)
endif()

# One test program a folder, run by ctest. Sources stand beside what they test; where none has a
# main(), GoogleTest's is taken.
#   tavero_test(NAME SOURCES ... LIBRARIES ... [DEFINITIONS ...] [RUNNER COMMAND ...]
#               [ENVIRONMENT NAME=VALUE ...] [PROPERTIES NAME VALUE ...] [THREADS])
# RUNNER is a command that starts the program, in a session with a service, say. ENVIRONMENT and
# PROPERTIES are ctest's. THREADS: it starts threads, so it is one for the thread sanitizer too.
function(tavero_test name)
    cmake_parse_arguments(ARG "THREADS" "" "SOURCES;LIBRARIES;DEFINITIONS;RUNNER;ENVIRONMENT;PROPERTIES"
        ${ARGN})
    if(NOT TAVERO_TESTS OR (TAVERO_TESTS STREQUAL "THREADS" AND NOT ARG_THREADS))
        return()
    endif()
    add_executable(${name} ${ARG_SOURCES})
    tavero_warnings(${name})
    target_compile_options(${name} PRIVATE ${TAVERO_TEST_OPTIONS})
    target_compile_definitions(${name} PRIVATE ${ARG_DEFINITIONS})
    target_precompile_headers(${name} REUSE_FROM TaveroTestHeaders)
    target_link_libraries(${name} PRIVATE
        ${ARG_LIBRARIES} GTest::gtest GTest::gmock GTest::gtest_main)
    add_test(NAME ${name} COMMAND ${ARG_RUNNER} $<TARGET_FILE:${name}>)
    # Long runs take much longer under a sanitizer, which has nothing to find in the length.
    if(CMAKE_CXX_FLAGS MATCHES fsanitize)
        list(APPEND ARG_ENVIRONMENT "GTEST_FILTER=-*ThroughAMonth*:*ThroughAYear*")
    endif()
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${ARG_ENVIRONMENT}" ${ARG_PROPERTIES})
endfunction()

# A fuzz target: NAME.cpp in the calling folder, with its seed inputs in fuzz/NAME/ if there are any.
# ctest runs each for a few seconds; run the program by hand for longer.
#   tavero_fuzz(NAME LIBRARIES ...)
function(tavero_fuzz name)
    if(NOT TAVERO_FUZZ)
        return()
    endif()
    cmake_parse_arguments(ARG "" "" "LIBRARIES" ${ARGN})
    add_executable(${name} ${name}.cpp)
    tavero_warnings(${name})
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES})
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    set(seeds)
    if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/${name})
        set(seeds ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/${name})
    endif()
    # New inputs go to the build folder, the first directory named; the seeds are only read.
    file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/corpus/${name})
    add_test(NAME ${name}
        COMMAND ${name} -max_total_time=4 -timeout=5 -rss_limit_mb=2048
                ${CMAKE_CURRENT_BINARY_DIR}/corpus/${name} ${seeds})
endfunction()
