# Sources that Debian 12 has no package of (or none for mingw-w64). scripts/fetchSources.sh puts them into
# a cache folder outside the checkout; each folder can be replaced by one of your own with -D.
include_guard(GLOBAL)
include(SameBytes)
if(DEFINED ENV{XDG_CACHE_HOME} AND NOT "$ENV{XDG_CACHE_HOME}" STREQUAL "")
    set(brimvaleCache $ENV{XDG_CACHE_HOME}/brimvale)
else()
    set(brimvaleCache $ENV{HOME}/.cache/brimvale)
endif()

# Declares the cache variable and stops with advice when the folder does not hold the file.
function(brimvale_outside_source variable folder file what)
    set(${variable} ${brimvaleCache}/${folder} CACHE PATH "${what}")
    if(NOT EXISTS ${${variable}}/${file})
        message(FATAL_ERROR "${what}: no ${file} in ${${variable}}. "
                            "Run scripts/fetchSources.sh, or name a folder that has it with -D${variable}=...")
    endif()
    brimvale_hide_folder(${${variable}})
endfunction()

if(BRIMVALE_EDITOR)
    brimvale_outside_source(BRIMVALE_VSTGUI_DIR vstgui vstgui/vstgui.h "VSTGUI 4 source folder, the one that holds vstgui/")
endif()
brimvale_outside_source(BRIMVALE_MINIAUDIO_DIR miniaudio miniaudio.h "miniaudio 0.11 source folder")
brimvale_outside_source(BRIMVALE_EBUR128_DIR libebur128 ebur128/ebur128.c "libebur128 1.2 source folder")

# WAV files. One header; only its WAV part is compiled.
set(miniaudioSource ${CMAKE_BINARY_DIR}/outside/miniaudio.c)
file(CONFIGURE OUTPUT ${miniaudioSource} CONTENT "#define MINIAUDIO_IMPLEMENTATION\n#include <miniaudio.h>\n")
add_library(miniaudio STATIC EXCLUDE_FROM_ALL ${miniaudioSource})
target_include_directories(miniaudio SYSTEM PUBLIC ${BRIMVALE_MINIAUDIO_DIR})
target_compile_definitions(
    miniaudio
    PUBLIC MA_NO_DEVICE_IO
           MA_NO_ENGINE
           MA_NO_FLAC
           MA_NO_GENERATION
           MA_NO_MP3
           MA_NO_NODE_GRAPH
           MA_NO_RESOURCE_MANAGER
           MA_NO_THREADING)
# Not ours to mend, to check or to make fast: sound is written and played far faster than it is rendered.
set(plainly -w -O1 -g0 -fno-sanitize=all)
target_compile_options(miniaudio PRIVATE ${plainly})

# Loudness.
add_library(ebur128 STATIC EXCLUDE_FROM_ALL ${BRIMVALE_EBUR128_DIR}/ebur128/ebur128.c)
target_include_directories(ebur128 SYSTEM PUBLIC ${BRIMVALE_EBUR128_DIR}/ebur128
                                   PRIVATE ${BRIMVALE_EBUR128_DIR}/ebur128/queue)
target_compile_options(ebur128 PRIVATE ${plainly})

# Sound devices and MIDI keyboards, of the player alone. It gets a miniaudio of its own, with the devices and without the
# files; a program must not link both.
if(BRIMVALE_PLAYER)
    brimvale_outside_source(BRIMVALE_RTMIDI_DIR rtmidi RtMidi.cpp "RtMidi 6 source folder")
    # miniaudio keeps what a connection to PulseAudio held that failed: an open file each time, and the player tries again and
    # again while there is no device. So a copy is compiled in which that is given back.
    set(mended ${CMAKE_BINARY_DIR}/outside/miniaudio_devices)
    file(READ ${BRIMVALE_MINIAUDIO_DIR}/miniaudio.h text)
    set(giveBack "((ma_pa_context_unref_proc)pContext->pulse.pa_context_unref)((ma_pa_context*)pPulseContext);")
    foreach(failure "[PulseAudio] Failed to connect PulseAudio context." "[PulseAudio] Waiting for connection failed.")
        string(REPLACE "\"${failure}\");" "\"${failure}\"); ${giveBack}" text "${text}")
    endforeach()
    file(MAKE_DIRECTORY ${mended})
    file(WRITE ${mended}/new.h "${text}")
    file(COPY_FILE ${mended}/new.h ${mended}/miniaudio.h ONLY_IF_DIFFERENT)
    file(REMOVE ${mended}/new.h)
    file(CONFIGURE OUTPUT ${mended}/miniaudio.c CONTENT "#define MINIAUDIO_IMPLEMENTATION\n#include \"miniaudio.h\"\n")
    add_library(miniaudio_devices STATIC EXCLUDE_FROM_ALL ${mended}/miniaudio.c)
    target_include_directories(miniaudio_devices SYSTEM PUBLIC ${BRIMVALE_MINIAUDIO_DIR})
    target_compile_definitions(
        miniaudio_devices
        PUBLIC MA_NO_DECODING
               MA_NO_ENCODING
               MA_NO_ENGINE
               MA_NO_GENERATION
               MA_NO_NODE_GRAPH
               MA_NO_RESOURCE_MANAGER)
    target_compile_options(miniaudio_devices PRIVATE ${plainly})
    target_link_libraries(miniaudio_devices PRIVATE ${CMAKE_DL_LIBS})

    add_library(rtmidi STATIC EXCLUDE_FROM_ALL ${BRIMVALE_RTMIDI_DIR}/RtMidi.cpp)
    target_include_directories(rtmidi SYSTEM PUBLIC ${BRIMVALE_RTMIDI_DIR})
    target_compile_options(rtmidi PRIVATE ${plainly})
    if(WIN32)
        target_compile_definitions(rtmidi PRIVATE __WINDOWS_MM__ RTMIDI_DO_NOT_ENSURE_UNIQUE_PORTNAMES)
        target_link_libraries(rtmidi PRIVATE winmm)
    else()
        find_package(PkgConfig REQUIRED)
        pkg_check_modules(alsa REQUIRED IMPORTED_TARGET alsa)
        target_compile_definitions(rtmidi PRIVATE __LINUX_ALSA__)
        target_link_libraries(rtmidi PRIVATE PkgConfig::alsa)
    endif()
endif()

# Debian packages of headers alone. The cross compiler must not see the rest of the folder that they lie in,
# so it gets a folder with nothing but them. Further arguments: where else to look.
function(brimvale_header_package name folder header)
    string(TOUPPER BRIMVALE_${name}_DIR variable)
    find_path(${variable} ${header} PATHS ${ARGN} NO_CMAKE_FIND_ROOT_PATH REQUIRED)
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/outside/${name})
    file(CREATE_LINK ${${variable}}/${folder} ${CMAKE_BINARY_DIR}/outside/${name}/${folder} SYMBOLIC)
    add_library(${name} INTERFACE)
    target_include_directories(${name} SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/outside/${name})
endfunction()
brimvale_header_package(cli11 CLI CLI/CLI.hpp)
# Its templates take a compiler minutes to optimise, most of all with sanitizers, and a command line is
# parsed once. So whatever links this must hold a program's main() or options and no work.
target_compile_options(cli11 INTERFACE -O0 -fno-sanitize=undefined)
