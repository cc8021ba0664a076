# Run by cpack behind packing. It puts files into an archive in the order in which the file system happens to hold
# them, and zip archives get the times of access, too; so these are packed once more, sorted and without.
get_filename_component(folder ${CPACK_TEMPORARY_INSTALL_DIRECTORY} DIRECTORY)
get_filename_component(name ${CPACK_TEMPORARY_INSTALL_DIRECTORY} NAME)
function(run)
    execute_process(COMMAND ${ARGV} WORKING_DIRECTORY ${folder} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

if(CPACK_GENERATOR STREQUAL ZIP)
    file(GLOB_RECURSE files LIST_DIRECTORIES true RELATIVE ${folder} ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*)
    list(SORT files)
    file(REMOVE ${CPACK_PACKAGE_FILES})
    run(zip -q -X -9 ${CPACK_PACKAGE_FILES} ${files})
elseif(CPACK_GENERATOR STREQUAL TGZ)
    string(REGEX REPLACE "\\.gz$" "" tar ${CPACK_PACKAGE_FILES})
    run(tar --create --file ${tar} --format=gnu --sort=name --owner=root:0 --group=root:0 ${name})
    file(REMOVE ${CPACK_PACKAGE_FILES})
    run(gzip -9 -n ${tar})
endif()
