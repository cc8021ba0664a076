# What is passed on and the packages that it is passed on in: cmake --build --preset windows --target package, or
# linux. What this build does not make is left out.
#
# The packages have two shapes, each an install component: "folders" is what the zip and the tar.gz hold, each format
# in a folder of its own; "system" is what the .deb and `cmake --install` put where Linux looks for it.
include_guard(GLOBAL)
include(Version)
include(ManualPage)
include(Notices)

# The oldest C library that the files for Linux run with; scripts/checkPassedOn.sh looks whether that is true.
set(BRIMVALE_GLIBC 2.35)
set(BRIMVALE_MAINTAINER "the Brimvale authors <brimvale@localhost>" CACHE STRING
    "Who makes the packages, with a mail address, as the .deb tells it")

set(packages ${CMAKE_SOURCE_DIR}/packages)
set(made ${CMAKE_BINARY_DIR}/packaging)
set(passedOn "")   # targets
set(formatRows "") # of the file that tells what goes where

# brimvale_place(FOLDER SYSTEM_FOLDER what...): where it goes in the two shapes; what is as install() takes it.
# An empty name leaves it out of that shape.
function(brimvale_place folder systemFolder)
    if(folder)
        install(${ARGN} DESTINATION ${folder} COMPONENT folders EXCLUDE_FROM_ALL)
    endif()
    if(systemFolder AND NOT WIN32)
        install(${ARGN} DESTINATION ${systemFolder} COMPONENT system)
    endif()
endfunction()

# brimvale_pass_on(TARGET "what it is" [ICON file.ico]): it tells its version, is stripped and holds the C++ runtime,
# of that only what it uses: the rest would need a newer C library. Only in releases, for sanitizers need the runtime
# that is shared.
function(brimvale_pass_on target description)
    brimvale_file_properties(${target} ${description} ${ARGN})
    set(options -s)
    if(NOT WIN32)
        list(APPEND options -static-libstdc++ -static-libgcc -Wl,--gc-sections)
    endif()
    foreach(option IN LISTS options)
        target_link_options(${target} PRIVATE $<$<CONFIG:Release>:${option}>)
    endforeach()
    set(passedOn ${passedOn} ${target} PARENT_SCOPE)
endfunction()

# brimvale_pack_format(TARGET FORMAT FOLDER SYSTEM_FOLDER BUNDLE "where Windows hosts look" "where Linux hosts look"):
# BUNDLE is the folder that is the instrument, or empty where it is one file.
function(brimvale_pack_format target format folder systemFolder bundle windowsPlace linuxPlace)
    if(NOT TARGET ${target})
        return()
    endif()
    brimvale_pass_on(${target} "Brimvale synthesizer (${format})")
    if(bundle)
        set(what ${bundle})
        brimvale_place(${folder} lib/${systemFolder} DIRECTORY ${CMAKE_BINARY_DIR}/${bundle})
    else()
        set(what Brimvale${CMAKE_SHARED_MODULE_SUFFIX})
        get_target_property(suffix ${target} SUFFIX)
        if(suffix)
            set(what Brimvale${suffix})
        endif()
        brimvale_place(${folder} lib/${systemFolder} FILES $<TARGET_FILE:${target}>)
    endif()
    set(place ${linuxPlace})
    if(WIN32)
        set(place ${windowsPlace})
    endif()
    set(formatRows "${formatRows}\n  ${folder}/${what}\n      to ${place}" PARENT_SCOPE)
    set(passedOn ${passedOn} PARENT_SCOPE)
endfunction()

brimvale_pack_format(
    Brimvale "VST 2.4" VST2 vst "" "the folder where your host looks for 64-bit VST 2 plug-ins,\n      often C:\\Program Files\\VSTPlugins"
    ~/.vst)
brimvale_pack_format(BrimvaleClap CLAP CLAP clap "" "C:\\Program Files\\Common Files\\CLAP" ~/.clap)
brimvale_pack_format(BrimvaleVst3 VST3 VST3 vst3 Brimvale.vst3 "C:\\Program Files\\Common Files\\VST3" ~/.vst3)
brimvale_pack_format(BrimvaleLv2 LV2 LV2 lv2 Brimvale.lv2 "C:\\Program Files\\Common Files\\LV2" ~/.lv2)

if(TARGET brimvale)
    brimvale_pass_on(brimvale "Brimvale synthesizer" ICON ${CMAKE_SOURCE_DIR}/resources/icon/brimvale.ico)
    brimvale_place(. bin PROGRAMS $<TARGET_FILE:brimvale>)
    brimvale_place("" share/applications FILES ${packages}/brimvale.desktop)
    foreach(side IN ITEMS 16 32 48 64 128 256)
        brimvale_place("" share/icons/hicolor/${side}x${side}/apps FILES ${CMAKE_SOURCE_DIR}/resources/icon/${side}/brimvale.png)
    endforeach()
endif()
brimvale_pass_on(brimvale-host "Brimvale: plays MIDI files into a VST 2.4 instrument" ICON
                 ${CMAKE_SOURCE_DIR}/resources/icon/brimvale.ico)
brimvale_place(. bin PROGRAMS $<TARGET_FILE:brimvale-host>)
foreach(program IN ITEMS brimvale brimvale-host)
    if(TARGET ${program})
        configure_file(${packages}/${program}.1.in ${made}/${program}.1 @ONLY)
        brimvale_place("" share/man/man1 FILES ${made}/${program}.1)
    endif()
endforeach()

# What is to be read.
if(WIN32)
    configure_file(${packages}/readme-windows.txt.in ${made}/README.txt @ONLY NEWLINE_STYLE DOS)
else()
    configure_file(${packages}/readme-linux.txt.in ${made}/README.txt @ONLY)
endif()
brimvale_place(. "" FILES ${made}/README.txt ${CMAKE_BINARY_DIR}/LICENSE.txt ${CMAKE_BINARY_DIR}/NOTICES.txt)
brimvale_place(. share/doc/brimvale FILES ${manualPage})
brimvale_place(examples share/doc/brimvale/examples FILES ${CMAKE_SOURCE_DIR}/examples/demo.mid)
file(READ ${CMAKE_SOURCE_DIR}/LICENSE licence)
file(READ ${CMAKE_BINARY_DIR}/NOTICES.txt notices)
configure_file(${packages}/copyright.in ${made}/copyright @ONLY)
configure_file(${CMAKE_SOURCE_DIR}/CHANGELOG.md ${made}/changelog COPYONLY)
brimvale_place("" share/doc/brimvale FILES ${made}/copyright ${made}/changelog)
brimvale_place("" share/lintian/overrides FILES ${packages}/lintian/brimvale)

# The packages.
set(CPACK_OUTPUT_CONFIG_FILE ${made}/CPackConfig.cmake)
set(CPACK_SOURCE_OUTPUT_CONFIG_FILE ${made}/CPackSourceConfig.cmake)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_SOURCE_DIR}/cmake/PackageSettings.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_SOURCE_DIR}/cmake/PackageFiles.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_SOURCE_DIR}/cmake/PackageArchive.cmake)
set(CPACK_BRIMVALE_SOURCE ${CMAKE_SOURCE_DIR})
set(CPACK_PACKAGE_NAME brimvale)
set(CPACK_PACKAGE_VENDOR "the Brimvale authors")
set(CPACK_PACKAGE_CONTACT ${BRIMVALE_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "two-oscillator subtractive synthesizer") # how lists of packages show it
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
                                                WORLD_EXECUTE)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "zenity | kdialog") # the panel asks for files with them
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Two table oscillators and noise through a drive stage and a state-variable
filter, two envelopes, an LFO that follows the song's tempo, and glide. It
plays 2 to 16 voices, or one voice legato, and comes with 128 programs.
.
The instrument comes as a plug-in for hosts and as a program of its own,
brimvale; brimvale-host renders MIDI files with it.")
if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_SYSTEM_NAME windows-x86_64)
else()
    set(CPACK_GENERATOR TGZ DEB)
    set(CPACK_SYSTEM_NAME linux-${CMAKE_SYSTEM_PROCESSOR})
endif()
set(CPACK_PACKAGE_FILE_NAME brimvale-${PROJECT_VERSION}-${CPACK_SYSTEM_NAME})
include(CPack)

# A target of our own in place of CPack's, which would build everything first, tests and all.
add_custom_target(
    package
    COMMAND ${CMAKE_CPACK_COMMAND} --config ${made}/CPackConfig.cmake
    DEPENDS ${passedOn} manual_page
    COMMENT "Packing brimvale ${PROJECT_VERSION}"
    USES_TERMINAL VERBATIM)

if(BRIMVALE_TESTS AND CMAKE_BUILD_TYPE STREQUAL Release AND NOT WIN32)
    # By target, where the Windows build puts it.
    set(windows_Brimvale Brimvale.dll)
    set(windows_BrimvaleClap Brimvale.clap)
    set(windows_BrimvaleVst3 Brimvale.vst3/Contents/x86_64-win/Brimvale.vst3)
    set(windows_BrimvaleLv2 Brimvale.lv2/Brimvale.dll)
    set(windows_brimvale brimvale.exe)
    set(windows_brimvale-host brimvale-host.exe)
    set(check ${CMAKE_SOURCE_DIR}/scripts/checkPassedOn.sh --glibc ${BRIMVALE_GLIBC})
    list(TRANSFORM passedOn REPLACE "(.+)" "$<TARGET_FILE:\\1>" OUTPUT_VARIABLE linuxFiles)
    add_test(NAME passedOn.linux COMMAND ${check} ${linuxFiles})
    if(BRIMVALE_WHOLE_SUITE)
        set(windowsFiles "")
        foreach(target IN LISTS passedOn)
            list(APPEND windowsFiles ${CMAKE_SOURCE_DIR}/build/windows/${windows_${target}})
        endforeach()
        add_test(NAME passedOn.windows COMMAND ${check} ${windowsFiles})
    endif()
endif()
