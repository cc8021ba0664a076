# Run by cpack between laying out a package's files and packing them.
set(top ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

if(CPACK_GENERATOR STREQUAL DEB)
    set(doc ${top}/usr/share/doc/${CPACK_PACKAGE_NAME})
    string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC) # that of SOURCE_DATE_EPOCH
    file(WRITE ${doc}/changelog.Debian
         "${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium\n\n"
         "  * Version ${CPACK_PACKAGE_VERSION}; changelog.gz tells what is new.\n\n"
         " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
    file(CHMOD ${doc}/changelog.Debian PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    file(GLOB toCompress ${doc}/changelog* ${top}/usr/share/man/man1/*.1)
    run(gzip -9 -n ${toCompress})
endif()
run(find ${top} -exec touch --no-dereference --date=@$ENV{SOURCE_DATE_EPOCH} {} +)
