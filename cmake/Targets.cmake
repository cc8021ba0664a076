# One function for each kind of target of ours. Every one gets the warnings and finds headers from the top
# of the tree: #include "folder/File.h".
include_guard(GLOBAL)
include(Warnings)

# On for the sanitizers' presets. Not for work on the sources, where the compiler then reads them all again
# after each change, nor for clang-tidy, which would find none of them under its own name. Names in the unnamed
# namespaces of a target's sources have to differ for it.
option(BRIMVALE_UNITY "Compile the sources of each target together: from nothing several times faster" OFF)

if(BRIMVALE_UNITY)
    # Unnamed namespaces then lie in included files, which is what this warns of.
    target_compile_options(brimvale_warnings INTERFACE -Wno-subobject-linkage)
endif()

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
