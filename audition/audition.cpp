// audition: plays every program of the bank with a phrase that suits it, measures it, and says what is wrong.

#include "audition/Pictures.h"
#include "audition/PulseWidth.h"
#include "examples/Pieces.h"
#include "host/WavWriter.h"

#include <CLI/CLI.hpp>

#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace
{
using audition::Audio;

struct Options
{
    std::filesystem::path source;
    std::filesystem::path wavFolder;
    std::filesystem::path table;
    std::filesystem::path sheet;
    std::filesystem::path pulseWidth;
    std::filesystem::path demo;
};

void writeWav (const std::filesystem::path& path, const Audio& audio)
{
    host::WavWriter file (path, audition::sampleRate, host::SampleFormat::int24);
    for (const float sample : audio)
        file.add (std::array{ sample, sample });
    file.finish ();
}

void writeText (const std::filesystem::path& path, const std::string& text)
{
    std::ofstream file (path);
    file << text;
    file.flush ();
    if (!file)
        throw std::runtime_error ("cannot write " + path.string ());
}

// "007 Finger Picked.wav"
std::string wavName (std::size_t number, const std::string& name)
{
    std::string digits = std::to_string (number);
    digits.insert (0, 3 - digits.size (), '0');
    return digits + " " + name + ".wav";
}

void drawPulseWidths (const Options& options)
{
    std::vector<audition::Tone> tones;
    for (const float width : { 1.0f, 0.75f, 0.5f, 0.25f, 0.0f })
    {
        const std::string position = std::to_string (width).substr (0, 4);
        tones.push_back ({ "Osc1-PW " + position, audition::pulseTone (width), audition::pulseToneHz (60) });
    }
    audition::drawTones (options.pulseWidth, tones);
}

void playPhrases (const Options& options, const std::vector<bank::SourceProgram>& programs)
{
    const audition::Player player (programs);
    std::vector<Audio> phrases;
    for (const bank::SourceProgram& program : programs)
    {
        phrases.push_back (audition::playPhrase (player, program));
        if (!options.wavFolder.empty ())
            writeWav (options.wavFolder / wavName (phrases.size () - 1, program.name ()), phrases.back ());
    }
    if (!options.sheet.empty ())
        audition::drawContactSheet (options.sheet, programs, phrases);
}

int run (const Options& options)
{
    std::ifstream source (options.source);
    const std::vector<bank::SourceProgram> programs = bank::readBankSource (source);
    if (!options.pulseWidth.empty ())
        drawPulseWidths (options);
    if (!options.demo.empty ())
        audition::drawPiece (options.demo, audition::Player (programs).play (examples::demo (), 3.0));

    if (!options.wavFolder.empty () || !options.sheet.empty ())
        playPhrases (options, programs);

    const std::vector<audition::SoundFigures> figures = audition::measureBank (programs);
    if (!options.table.empty ())
        writeText (options.table, audition::soundList (programs, figures));

    std::vector<std::string> wrong = audition::complaints (programs, figures);
    for (const examples::Piece& piece : examples::allPieces ())
    {
        const audition::PieceFigures measured = audition::measurePiece (programs, piece);
        std::cout << piece.title () << ": " << audition::describe (measured) << "\n";
        for (const std::string& complaint : audition::complaints (piece, measured))
            wrong.push_back (complaint);
    }
    std::cout << programs.size () << " sounds\n";
    for (const std::string& complaint : wrong)
        std::cout << complaint << "\n";
    return wrong.empty () ? 0 : 1;
}
}

int main (int argc, char** argv)
try
{
    CLI::App app{ "Plays every sound of the bank, measures it, and says which break the limits" };
    Options options;
    app.add_option ("source", options.source, "The bank source, factorybank.txt")
        ->required ()
        ->check (CLI::ExistingFile);
    app.add_option ("--wav", options.wavFolder, "Folder for one WAV file a sound")
        ->check (CLI::ExistingDirectory);
    app.add_option ("--table", options.table, "File for the list of sounds, e.g. sounds.md");
    app.add_option ("--sheet", options.sheet, "File for the picture of all sounds, e.g. sounds.png");
    app.add_option ("--pulse-width", options.pulseWidth,
                    "File for the picture of the pulse width knob, a PNG");
    app.add_option ("--demo", options.demo, "File for the picture of the demo, a PNG");
    CLI11_PARSE (app, argc, argv);

    return run (options);
}
catch (const std::exception& error)
{
    std::cerr << "audition: " << error.what () << "\n";
    return 2;
}
