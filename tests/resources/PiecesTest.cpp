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

TEST (PieceNotation, ReadsNotesChordsHoldsMarksAndStrokes)
{
    examples::Piece piece ("", 120.0);
    piece.channel (3);
    piece.line (4.0, 0.25, "A4! - . C#3+Bb2, C4_", { 80, 100 });
    piece.beat (8.0, 36, "X.. -");
    const examples::Note expected[] = {
        { 4.0, 0.475, 69, 80 + 24 + 4, 3 },  { 4.75, 0.225, 49, 92 - 24 - 5, 3 },
        { 4.75, 0.225, 46, 92 - 24 - 5, 3 }, { 5.0, 0.35, 60, 96 + 4, 3 },
        { 8.0, 0.2, 36, 118 + 4 - 2, 3 },    { 8.75, 0.2, 36, 46 - 5 - 1, 3 }
    };
    ASSERT_EQ (piece.notes ().size (), std::size (expected));
    for (std::size_t n = 0; n < std::size (expected); ++n)
    {
        EXPECT_DOUBLE_EQ (piece.notes ()[n].start, expected[n].start) << n;
        EXPECT_DOUBLE_EQ (piece.notes ()[n].length, expected[n].length) << n;
        EXPECT_EQ (piece.notes ()[n].key, expected[n].key) << n;
        EXPECT_EQ (piece.notes ()[n].velocity, expected[n].velocity) << n;
        EXPECT_EQ (piece.notes ()[n].channel, expected[n].channel) << n;
    }
    piece.swing (0.2);
    for (const auto& [straight, late] :
         { std::pair (2.0, 2.0), std::pair (2.25, 2.3), std::pair (2.375, 2.4) })
        EXPECT_DOUBLE_EQ (piece.swung (straight), late);
    for (const char* word : { "H2", "C", "C9", "c4", "C4+", "+", "!" })
        EXPECT_THROW (piece.line (0.0, 1.0, word), std::invalid_argument) << word;
    EXPECT_THROW (piece.beat (0.0, 36, "xy"), std::invalid_argument);
}
}
