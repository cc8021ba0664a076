# GoogleTest from the sources that Debian's package carries, so that both systems use the same one.
include_guard(GLOBAL)
set(BRIMVALE_GOOGLETEST_DIR /usr/src/googletest CACHE PATH "GoogleTest source folder")
if(NOT EXISTS ${BRIMVALE_GOOGLETEST_DIR}/CMakeLists.txt)
    message(FATAL_ERROR "The tests need the Debian package googletest; run scripts/installPackages.sh test, "
                        "or build without them: -DBRIMVALE_TESTS=OFF")
endif()
set(INSTALL_GTEST OFF)
set(BUILD_GMOCK ON)
add_subdirectory(${BRIMVALE_GOOGLETEST_DIR} ${CMAKE_BINARY_DIR}/outside/googletest EXCLUDE_FROM_ALL SYSTEM)
foreach(target IN ITEMS gtest gtest_main gmock gmock_main)
    # Not ours to mend, to check or to make fast.
    target_compile_options(${target} PRIVATE -w -O1 -g0 -fno-sanitize=all)
endforeach()
