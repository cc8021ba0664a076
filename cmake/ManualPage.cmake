# cmake --build ... --target manual_page: one page of docs/manual.md with the pictures inside, for the packages. Its
# tables and drawn pictures are taken as they are committed; the target `manual`, of the native build, renews them first.
include_guard(GLOBAL)
find_program(BRIMVALE_PANDOC pandoc DOC "Turns the manual into a page")
set(manualPage ${CMAKE_BINARY_DIR}/manual.html)
if(BRIMVALE_PANDOC)
    # With --columns: a table with a row longer than that gets the page's whole width, so no row counts as that long.
    set(makeManualPage
        COMMAND
        ${BRIMVALE_PANDOC} --from gfm --to html5 --self-contained --shift-heading-level-by=-1 --toc --toc-depth=2
        --metadata lang=en --columns=100000 --css ${CMAKE_SOURCE_DIR}/manual/manual.css --resource-path
        ${CMAKE_SOURCE_DIR}/docs --output ${manualPage} ${CMAKE_SOURCE_DIR}/docs/manual.md)
else()
    set(makeManualPage
        COMMAND ${CMAKE_COMMAND} -E echo "The manual's page needs pandoc; run scripts/installPackages.sh package and configure again."
        COMMAND ${CMAKE_COMMAND} -E false)
endif()
add_custom_target(manual_page ${makeManualPage} COMMENT "Making ${manualPage}" VERBATIM)
