# The makers of the wave tables, the factory bank and the example pieces, and the command that plays the bank and
# measures it. The libraries are the tests' too.
add_library(brimvale_waves STATIC makeWaves/WaveTables.cpp)
target_include_directories(brimvale_waves PUBLIC ${CMAKE_SOURCE_DIR})
target_link_libraries(brimvale_waves PUBLIC brimvale_warnings)
add_executable(makeWaves makeWaves/main.cpp)
target_link_libraries(makeWaves PRIVATE brimvale_waves)

add_library(brimvale_bank STATIC makeBank/BankSource.cpp makeBank/ParameterUnits.cpp)
target_link_libraries(brimvale_bank PUBLIC brimvale_core)
add_executable(makeBank makeBank/main.cpp)
target_link_libraries(makeBank PRIVATE brimvale_bank)

add_library(brimvale_demos STATIC makeDemos/Events.cpp makeDemos/MidiFile.cpp makeDemos/Piece.cpp makeDemos/Pieces.cpp)
target_include_directories(brimvale_demos PUBLIC ${CMAKE_SOURCE_DIR})
target_link_libraries(brimvale_demos PUBLIC brimvale_warnings)
add_executable(makeDemos makeDemos/main.cpp)
target_link_libraries(makeDemos PRIVATE brimvale_demos brimvale_bank)

pkg_check_modules(auditionMeasures REQUIRED IMPORTED_TARGET kissfft-float libebur128)
pkg_check_modules(auditionFiles REQUIRED IMPORTED_TARGET sndfile cairo)
add_library(brimvale_audition STATIC audition/Measures.cpp audition/Phrases.cpp audition/Player.cpp audition/PulseWidth.cpp
                                     audition/SoundReport.cpp)
target_link_libraries(brimvale_audition PUBLIC brimvale_bank brimvale_demos PkgConfig::auditionMeasures)
add_executable(audition audition/main.cpp audition/Pictures.cpp)
target_link_libraries(audition PRIVATE brimvale_audition brimvale_resources PkgConfig::auditionFiles)
