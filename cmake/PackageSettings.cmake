# Read by cpack for each kind of package.
if(CPACK_GENERATOR STREQUAL DEB)
    set(shape system)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
else()
    set(shape folders)
endif()
list(GET CPACK_INSTALL_CMAKE_PROJECTS 0 buildFolder)
set(CPACK_INSTALL_CMAKE_PROJECTS ${buildFolder} ${CPACK_PACKAGE_NAME} ${shape} /)

# Everything in a package has the time of the last change to the sources.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
    execute_process(
        COMMAND git -C ${CPACK_BRIMVALE_SOURCE} log -1 --format=%ct
        OUTPUT_VARIABLE time
        OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    if(NOT time) # no checkout but an unpacked archive
        file(TIMESTAMP ${CPACK_BRIMVALE_SOURCE}/CHANGELOG.md time "%s" UTC)
    endif()
    set(ENV{SOURCE_DATE_EPOCH} ${time})
endif()
set(ENV{TZ} UTC) # zip archives tell local times
