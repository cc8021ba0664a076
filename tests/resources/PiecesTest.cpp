#include "examples/Pieces.h"
#include "audition/SoundReport.h"
#include "examples/Score.h"
#include "midi/Writer.h"
#include "tests/resources/Files.h"

#include <cmath>

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
         { std::pair{ examples::demo (), "demo" }, std::pair{ examples::lowRoads (), "low-roads" },
           std::pair{ examples::harbourLights (), "harbour-lights" },
           std::pair{ examples::nightTrain (), "night-train" } })
    {
        const auto bytes = midi::fileBytes (examples::songOf (piece, names));
        EXPECT_TRUE (asString (bytes) == bytesOf (std::string ("examples/") + file + ".mid")) << file;
    }
}

TEST (Pieces, PlayWithoutClicksDcAndClipping)
{
    const std::vector<bank::SourceProgram> programs = factoryPrograms ();
    for (const examples::Piece& piece : examples::allPieces ())
    {
        const audition::PieceFigures figures = audition::measurePiece (programs, piece);
        for (const std::string& complaint : audition::complaints (piece, figures))
            ADD_FAILURE () << complaint;
        EXPECT_GT (figures.seconds, 20.0) << piece.title ();
        EXPECT_LT (figures.seconds, piece.title () == "Brimvale demo" ? 40.0 : 120.0) << piece.title ();
        EXPECT_GT (figures.loudness, -24.0) << piece.title ();
    }
}

TEST (Pieces, EveryNoteThatStartsEnds)
{
    const std::vector<std::string> names = factoryNames ();
    for (const examples::Piece& piece : examples::allPieces ())
    {
        int held[128] = {};
        for (const midi::Message& message : examples::songOf (piece, names).messages)
        {
            if (message.bytes[0] == 0x90)
            {
                EXPECT_EQ (++held[message.bytes[1]], 1)
                    << piece.title () << ": key " << int (message.bytes[1]) << " at " << message.tick;
            }
            if (message.bytes[0] == 0x80)
                --held[message.bytes[1]];
        }
        for (const int count : held)
            EXPECT_EQ (count, 0) << piece.title ();
    }
}

TEST (PieceNotation, ReadsNotesChordsHoldsAndMarks)
{
    examples::Piece piece ("", 120.0);
    piece.line (4.0, 0.5, "A4! - . C#3+Bb2, C4_");
    ASSERT_EQ (piece.notes ().size (), 4u);
    const examples::Note expected[] = {
        { 4.0, 0.95, 69, 118 }, { 5.5, 0.45, 49, 68 }, { 5.5, 0.45, 46, 68 }, { 6.0, 0.6, 60, 92 }
    };
    for (std::size_t n = 0; n < 4; ++n)
    {
        EXPECT_DOUBLE_EQ (piece.notes ()[n].start, expected[n].start) << n;
        EXPECT_DOUBLE_EQ (piece.notes ()[n].length, expected[n].length) << n;
        EXPECT_EQ (piece.notes ()[n].key, expected[n].key) << n;
        EXPECT_EQ (piece.notes ()[n].velocity, expected[n].velocity) << n;
    }
    for (const char* word : { "H2", "C", "C9", "c4", "C4+", "+", "!" })
        EXPECT_THROW (piece.line (0.0, 1.0, word), std::invalid_argument) << word;
}

// The measure that the pieces are judged by finds a sound that is cut off, and lets the same sound fade.
TEST (ClickMeasure, FindsACutAndNoFade)
{
    std::vector<float> tone (audition::sampleRate);
    for (std::size_t n = 0; n < tone.size (); ++n)
        tone[n] = 0.3f * std::cos (static_cast<float> (n) * 0.02f);
    std::vector<float> cut = tone;
    std::fill (cut.begin () + 22000, cut.end (), 0.0f);
    EXPECT_GT (audition::sharpestClick (cut), audition::clickLimit);
    std::vector<float> faded = tone;
    for (std::size_t n = 22000; n < faded.size (); ++n)
        faded[n] *= std::max (0.0f, 1.0f - static_cast<float> (n - 22000) / 200.0f);
    EXPECT_LT (audition::sharpestClick (faded), audition::clickLimit);
}
}
