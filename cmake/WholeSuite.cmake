# Tests of the other presets, run by the native build's ctest, so that one summary covers everything.
# ./test builds the presets windows, asan and tsan first and then turns this on.
include_guard(GLOBAL)
option(BRIMVALE_WHOLE_SUITE "Also run the tests of the presets windows (under Wine), asan and tsan" OFF)

# brimvale_add_wine_test(NAME EXECUTABLE [OWN_PREFIX] [DISPLAY] [ARGUMENTS argument...])
# EXECUTABLE is a path below build/windows. OWN_PREFIX: the program writes to the registry, so it gets
# a fresh Wine prefix of its own. DISPLAY: it opens windows, so it gets that and a virtual screen.
function(brimvale_add_wine_test name executable)
    if(NOT BRIMVALE_WHOLE_SUITE)
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 2 wine "OWN_PREFIX;DISPLAY" "" "ARGUMENTS")
    set(options "")
    if(wine_OWN_PREFIX OR wine_DISPLAY)
        list(APPEND options --own-prefix ${name})
    endif()
    if(wine_DISPLAY)
        list(APPEND options --display)
    endif()
    add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/scripts/wineRun.sh ${options}
                                  ${CMAKE_SOURCE_DIR}/build/windows/${executable} ${wine_ARGUMENTS})
    # The first program to run sets Wine up, which may take a minute on a busy machine.
    set_tests_properties(${name} PROPERTIES TIMEOUT 900 LABELS wine)
endfunction()

# The suites of the sanitizers' presets, each as one test.
function(brimvale_add_sanitizer_suites)
    if(NOT BRIMVALE_WHOLE_SUITE)
        return()
    endif()
    foreach(preset IN ITEMS asan tsan)
        add_test(NAME sanitizers.${preset} COMMAND ${CMAKE_CTEST_COMMAND} --test-dir ${CMAKE_SOURCE_DIR}/build/${preset}
                                                   --output-on-failure --no-tests=error --parallel 2
                                                   # One counts memory, which the sanitizer itself keeps; it looks for leaks
                                                   # anyway. A sound server's library keeps some of its own, and is
                                                   # unloaded before leaks are told, so its name excuses nothing.
                                                   --exclude-regex "ManyOpenings|JackTest|OpensWithoutAnAudioDevice")
        set_tests_properties(
            sanitizers.${preset}
            PROPERTIES TIMEOUT 1800 LABELS sanitizers COST 80 # s: the long ones first
                       ENVIRONMENT LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/leaks.supp:print_suppressions=0)
    endforeach()
endfunction()
