#include "examples/Pieces.h"
#include "audition/SoundReport.h"
#include "examples/Score.h"
#include "midi/Writer.h"
#include "tests/resources/Files.h"

#include <map>
#include <set>

namespace
{
std::vector<std::string> factoryNames ()
{
    std::vector<std::string> names;
    for (const bank::SourceProgram& program : factoryPrograms ())
        names.push_back (program.name ());
    return names;
}

TEST (Pieces, AreWhatTheMakerMakes)
{
    const std::vector<std::string> names = factoryNames ();
    for (const auto& [piece, file] :
         { std::pair (&examples::demo, "demo"), std::pair (&examples::lowRoads, "low-roads"),
           std::pair (&examples::harbourLights, "harbour-lights"),
           std::pair (&examples::nightTrain, "night-train") })
        EXPECT_TRUE (asString (midi::fileBytes (examples::songOf (piece (), names))) ==
                     bytesOf (std::string ("examples/") + file + ".mid"))
            << file;
}

TEST (Pieces, PlayLoudEnoughWithoutClicksHolesAndClipping)
{
    const std::vector<bank::SourceProgram> programs = factoryPrograms ();
    for (const examples::Piece& piece : examples::allPieces ())
    {
        const audition::PieceFigures figures = audition::measurePiece (programs, piece);
        for (const std::string& complaint : audition::complaints (piece, figures))
            ADD_FAILURE () << complaint;
        EXPECT_GT (figures.seconds, piece.title () == "Brimvale demo" ? 80.0 : 50.0) << piece.title ();
        EXPECT_LT (figures.seconds, 100.0) << piece.title ();
    }
}

TEST (Pieces, EveryNoteThatStartsEndsAndNoTwoPlayAlike)
{
    const std::vector<std::string> names = factoryNames ();
    for (const examples::Piece& piece : examples::allPieces ())
    {
        std::map<std::pair<int, int>, int> held; // by channel and key
        std::set<int> velocities;
        for (const midi::Message& event : examples::songOf (piece, names).messages)
        {
            const int status = event.bytes[0] & 0xF0;
            const std::pair key (event.bytes[0] & 0x0F, int (event.bytes[1]));
            if (status == 0x90)
            {
                EXPECT_EQ (++held[key], 1) << piece.title () << ": channel " << key.first << ", key "
                                           << key.second << " at " << event.tick;
                velocities.insert (event.bytes[2]);
            }
            if (status == 0x80)
                --held[key];
        }
        for (const auto& [key, count] : held)
            EXPECT_EQ (count, 0) << piece.title ();
        EXPECT_GT (velocities.size (), 20u) << piece.title ();
    }
}

TEST (PieceNotation, RefusesWhatIsNone)
{
    examples::Piece piece ("", 120.0);
    for (const char* word : { "H2", "C", "C9", "c4", "C4+", "+", "!" })
        EXPECT_THROW (piece.line (0.0, 1.0, word), std::invalid_argument) << word;
    EXPECT_THROW (piece.beat (0.0, 36, "xy"), std::invalid_argument);
}
}
