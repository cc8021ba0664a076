# One function for each kind of target of ours. Every one gets the warnings and finds headers from the top
# of the tree: #include "folder/File.h".
include_guard(GLOBAL)
include(Warnings)

# brimvale_library(NAME source... [PUBLIC library...] [PRIVATE library...])
function(brimvale_library name)
    cmake_parse_arguments(PARSE_ARGV 1 lib "" "" "PUBLIC;PRIVATE")
    add_library(${name} STATIC ${lib_UNPARSED_ARGUMENTS})
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC brimvale_warnings ${lib_PUBLIC} PRIVATE ${lib_PRIVATE})
endfunction()

# brimvale_program(NAME source... [LINKS library...])
function(brimvale_program name)
    cmake_parse_arguments(PARSE_ARGV 1 program "" "" "LINKS")
    add_executable(${name} ${program_UNPARSED_ARGUMENTS})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
    target_link_libraries(${name} PRIVATE brimvale_warnings ${program_LINKS})
endfunction()
