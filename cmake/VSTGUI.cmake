# The graphics toolkit, as the static library `vstgui`: one translation unit per platform. Its binding to VST 2.4
# is `vstgui_vst2`. Its sources are not part of this repository; BRIMVALE_VSTGUI_DIR
# names a VSTGUI 4 source tree (the folder that holds vstgui/vstgui.h).
include(OutsideSources)

set(vstguiSources ${BRIMVALE_VSTGUI_DIR}/vstgui)
if(WIN32)
    set(platformUnit ${vstguiSources}/vstgui_win32.cpp)
else()
    set(platformUnit ${vstguiSources}/vstgui_linux.cpp)
endif()

add_library(vstgui STATIC ${platformUnit})
target_include_directories(vstgui SYSTEM PUBLIC ${BRIMVALE_VSTGUI_DIR})
# With its assertions off in every build: they abort on states that the library itself recovers from.
target_compile_definitions(
    vstgui
    PUBLIC VSTGUI_ENABLE_DEPRECATED_METHODS=1
    PRIVATE NDEBUG RELEASE)
# Its pictures are drawn by the system's libraries; what it does itself is not worth a compiler's minute.
target_compile_options(vstgui PRIVATE -w -g0 -O1)
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    # The address and the thread sanitizer look into it, for what we do to its objects shows there.
    target_compile_options(vstgui PRIVATE -O0 -fno-sanitize=undefined)
endif()

if(WIN32)
    target_compile_definitions(
        vstgui PUBLIC WIN32=1 UNICODE _UNICODE _WIN32_WINNT=0x0A00 WINVER=0x0A00)
    target_compile_options(
        vstgui PRIVATE -include ${CMAKE_SOURCE_DIR}/cmake/VstguiMingw.h)
    target_link_libraries(
        vstgui
        PUBLIC d2d1
               dwrite
               windowscodecs
               shlwapi
               ole32
               uuid
               oleaut32
               comdlg32
               comctl32
               opengl32
               gdi32
               imm32
               dxguid
               dwmapi
               d3d11
               dxgi)
else()
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(
        VstguiSystem
        REQUIRED
        IMPORTED_TARGET
        x11
        x11-xcb
        xcb
        xcb-util
        xcb-cursor
        xcb-keysyms
        xcb-xkb
        xkbcommon
        xkbcommon-x11
        fontconfig
        freetype2
        cairo
        pangocairo
        pangoft2)
    target_compile_definitions(vstgui PUBLIC LINUX=1)
    target_link_libraries(vstgui PUBLIC PkgConfig::VstguiSystem ${CMAKE_DL_LIBS})
endif()

# It finds the dispatch layer under the name that it expects.
add_library(vstgui_vst2 STATIC ${vstguiSources}/plugin-bindings/aeffguieditor.cpp)
target_include_directories(vstgui_vst2 PUBLIC ${CMAKE_SOURCE_DIR}/plugin/sdk PRIVATE ${CMAKE_SOURCE_DIR})
target_compile_definitions(vstgui_vst2 PRIVATE NDEBUG RELEASE)
target_compile_options(vstgui_vst2 PRIVATE -w)
target_link_libraries(vstgui_vst2 PUBLIC vstgui)
