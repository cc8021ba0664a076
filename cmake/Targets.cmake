# One function for each kind of target of ours. Every one gets the warnings and finds headers from the top
# of the tree: #include "folder/File.h".
include_guard(GLOBAL)
include(Warnings)

# Joined sources are compiled several times faster, for most of the time goes into the headers that they share.
# Names in the unnamed namespaces of a target's sources have to differ for it. Sources that are left apart have to
# include what they use, a change costs one file, and clang-tidy finds each under its own name.
option(BRIMVALE_UNITY "Join the sources of each target" OFF)
option(BRIMVALE_UNITY_TESTS "Join the sources of each test" ON)

# brimvale_library(NAME source... [PUBLIC library...] [PRIVATE library...])
function(brimvale_library name)
    cmake_parse_arguments(PARSE_ARGV 1 lib "" "" "PUBLIC;PRIVATE")
    add_library(${name} STATIC ${lib_UNPARSED_ARGUMENTS})
    set_target_properties(${name} PROPERTIES UNITY_BUILD ${BRIMVALE_UNITY})
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC brimvale_warnings ${lib_PUBLIC} PRIVATE ${lib_PRIVATE})
endfunction()

# brimvale_program(NAME source... [LINKS library...])
function(brimvale_program name)
    cmake_parse_arguments(PARSE_ARGV 1 program "" "" "LINKS")
    add_executable(${name} ${program_UNPARSED_ARGUMENTS})
    set_target_properties(${name} PROPERTIES UNITY_BUILD ${BRIMVALE_UNITY})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
    target_link_libraries(${name} PRIVATE brimvale_warnings ${program_LINKS})
endfunction()
