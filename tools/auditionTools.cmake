# The makers of the wave tables, the factory bank and the example pieces, and the command that plays the bank and
# measures it. The libraries are the tests' too.
add_library(brimvale_waves STATIC makeWaves/WaveTables.cpp)
target_include_directories(brimvale_waves PUBLIC ${CMAKE_SOURCE_DIR})
target_link_libraries(brimvale_waves PUBLIC brimvale_warnings)
add_executable(makeWaves makeWaves/main.cpp)
target_link_libraries(makeWaves PRIVATE cli11 brimvale_waves)

add_library(brimvale_bank STATIC makeBank/BankSource.cpp makeBank/ParameterUnits.cpp)
target_link_libraries(brimvale_bank PUBLIC brimvale_core)
add_executable(makeBank makeBank/main.cpp)
target_link_libraries(makeBank PRIVATE cli11 brimvale_bank)

add_library(brimvale_demos STATIC makeDemos/Events.cpp makeDemos/MidiFile.cpp makeDemos/Piece.cpp makeDemos/Pieces.cpp)
target_include_directories(brimvale_demos PUBLIC ${CMAKE_SOURCE_DIR})
target_link_libraries(brimvale_demos PUBLIC brimvale_warnings)
add_executable(makeDemos makeDemos/main.cpp)
target_link_libraries(makeDemos PRIVATE cli11 brimvale_demos brimvale_bank)

# Transforms come from kissfft, loudness and true peaks from libebur128.
pkg_check_modules(kissfft REQUIRED IMPORTED_TARGET kissfft-float)
pkg_check_modules(cairo REQUIRED IMPORTED_TARGET cairo)
add_library(brimvale_audition STATIC audition/Measures.cpp audition/Phrases.cpp audition/Player.cpp
                                     audition/PulseWidth.cpp audition/SoundReport.cpp)
target_link_libraries(brimvale_audition PUBLIC brimvale_bank brimvale_demos PRIVATE PkgConfig::kissfft ebur128)
add_library(brimvale_pictures STATIC audition/Pictures.cpp)
target_link_libraries(brimvale_pictures PUBLIC brimvale_audition PRIVATE PkgConfig::cairo)
add_executable(audition audition/main.cpp)
target_link_libraries(audition PRIVATE cli11 brimvale_pictures brimvale_hostcore brimvale_resources)

# cmake --build --preset linux --target sounds: makes the resources and examples again from their sources, plays and
# measures every sound (one WAV file each in out/sounds), and renews the pictures and the list in docs/.
set(soundFiles ${CMAKE_SOURCE_DIR}/resources)
set(soundDocs ${CMAKE_SOURCE_DIR}/docs)
set(soundWavs ${CMAKE_SOURCE_DIR}/out/sounds)
add_custom_target(
    sounds
    COMMAND makeWaves ${soundFiles}
    COMMAND makeBank ${soundFiles}/factorybank.txt ${soundFiles}/factorybank.bin
    COMMAND makeDemos ${soundFiles}/factorybank.txt ${CMAKE_SOURCE_DIR}/examples
    COMMAND ${CMAKE_COMMAND} -E make_directory ${soundWavs}
    COMMAND audition ${soundFiles}/factorybank.txt --wav ${soundWavs} --table ${soundDocs}/sounds.md --sheet
            ${soundDocs}/sounds.png --pulse-width ${soundDocs}/pulse-width.png
    USES_TERMINAL)
