# The same sources make the same release, wherever and whenever it is built: no name of a folder, no time and no
# serial number of the build gets into it.
include_guard(GLOBAL)

# Files below the folder tell their names from there on. Only in release builds: debuggers need the true names.
function(brimvale_hide_folder folder)
    add_compile_options($<$<AND:$<CONFIG:Release>,$<COMPILE_LANGUAGE:C,CXX>>:-ffile-prefix-map=${folder}=.>)
endfunction()

brimvale_hide_folder(${CMAKE_BINARY_DIR})
brimvale_hide_folder(${CMAKE_SOURCE_DIR})
add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-Wdate-time>)
if(WIN32)
    add_link_options(-Wl,--no-insert-timestamp)
endif()
