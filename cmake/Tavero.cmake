# What every target of the project shares.

# Our own code compiles without a warning. One is off: a record written with the fields that matter
# leaves the others at their defaults, and that is the point of it.
function(tavero_warnings target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wnon-virtual-dtor
        -Woverloaded-virtual -Wold-style-cast -Wcast-align -Wformat=2
        -Wno-missing-field-initializers
        # GCC 12 warns of std::string's own code when it optimises fully.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
endfunction()

# One test program a folder, run by ctest. Sources stand beside what they test.
#   tavero_test(NAME SOURCES ... LIBRARIES ...)
function(tavero_test name)
    if(NOT TAVERO_TESTS)
        return()
    endif()
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    tavero_warnings(${name})
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} GTest::gtest GTest::gmock GTest::gtest_main)
    add_test(NAME ${name} COMMAND ${name})
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
