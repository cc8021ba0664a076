// brimvale: the instrument without a host.
#include <csignal>
#include <cstdio>
#include <exception>
#include <stdexcept>

#include "host/ProgramList.h"
#include "midi/Reader.h"
#include "platform/Console.h"
#include "player/DeviceWatch.h"
#include "player/Options.h"
#include "player/Player.h"
#include "player/ProgramName.h"
#include "player/StoredChoice.h"

namespace
{
using namespace player;

constexpr int failedStatus = 1;
constexpr int turn = 10; // milliseconds of the event loop

// Set by Ctrl-C and its like.
volatile std::sig_atomic_t interrupted = 0;

void interrupt (int /*signal*/)
{
    interrupted = 1;
}

// Says something to whoever has started the program: on its console, or else in a box.
class Voice
{
public:
    void say (const std::string& text, std::FILE* stream = stderr) const
    {
        if (hasConsole)
        {
            std::fprintf (stream, "%s", text.c_str ());
            std::fflush (stream);
        }
        else
        {
            platform::showMessage (text.c_str (), programName, platform::Buttons::ok);
        }
    }
    void complain (const std::string& sentence) const { say ("brimvale: " + sentence + ".\n"); }

    // What the window shows, too, and nobody shall have to put away.
    void mention (const std::string& sentence) const
    {
        if (hasConsole)
            complain (sentence);
    }

private:
    bool hasConsole = platform::attachConsole ();
};

void listDevices (const Voice& voice)
{
    std::string text;
    for (const Device& device : AudioOut::devices ())
        text += "audio: " + device.name + " (" + device.system + ")\n";
    if (text.empty ())
        text = "no audio device was found\n";
    try
    {
        const std::vector<Device> keyboards = MidiSystem::make ()->devices ();
        for (const Device& keyboard : keyboards)
            text += "midi:  " + keyboard.name + "\n";
        if (keyboards.empty ())
            text += "no MIDI keyboard was found\n";
    }
    catch (const std::runtime_error& error)
    {
        text += std::string (error.what ()) + "\n";
    }
    voice.say (text, stdout);
}

void selectProgram (instrument::Instrument& instrument, const std::string& wanted)
{
    std::vector<std::string> names;
    names.reserve (instrument::programCount);
    for (int program = 0; program < instrument::programCount; ++program)
        names.push_back (instrument.programName (program));
    const auto found = host::ProgramList (std::move (names)).find (wanted);
    if (!found)
        throw std::runtime_error ("there is no program \"" + wanted + "\"");
    instrument.setProgram (*found);
}

std::string nameOf (const std::filesystem::path& file)
{
    const std::u8string text = file.u8string ();
    return { text.begin (), text.end () };
}

void openSong (Player& player, const std::filesystem::path& file)
{
    try
    {
        player.openSong (file);
    }
    catch (const midi::ReadError& error)
    {
        throw std::runtime_error ("cannot read the MIDI file " + nameOf (file) + ": " + error.what ());
    }
}

void play (const Options& options, const Voice& voice)
{
    const auto store = platform::makeSettingsStore ();
    const Choice choice = readChoice (options, *store);
    Performer performer (instrument::systemServices (instrument::BankPlaces::perUser),
                         { .pedalAndWheel = true, .songLock = true });
    if (!options.program.empty ())
        selectProgram (performer.instrument (), options.program);

    // One that was chosen by name now is waited for.
    Sound sound ({ .settings = choice.audio,
                   .isSilent = options.silent,
                   .mayBeAnother = !options.device.has_value () });
    performer.instrument ().setSampleRate (static_cast<float> (sound.sampleRate ()));

    Player window (performer, { .sampleRate = static_cast<double> (sound.sampleRate ()),
                                .followsProgramChanges = options.program.empty (),
                                .note = {} });
    sound.start (performer);
    if (!options.song.empty ())
        openSong (window, options.song);

    std::unique_ptr<MidiIn> midi;
    std::string midiProblem;
    try
    {
        if (choice.listensToMidi)
            midi = std::make_unique<MidiIn> (MidiSystem::make (), choice.midi, performer.liveEvents ());
        if (midi != nullptr)
            midiProblem = midi->problem ();
    }
    catch (const std::runtime_error& error)
    {
        midiProblem = error.what ();
    }
    const bool hasOneKeyboard = midi != nullptr && midi->names ().size () == 1;
    if (!storeChoice (options, sound.deviceName (), hasOneKeyboard ? midi->names ().front () : "", *store))
        voice.complain ("the choice of devices could not be stored");
    for (const std::string& problem : { sound.problem (), midiProblem })
    {
        if (!problem.empty ())
            voice.complain (problem);
    }

    DeviceWatch watch (sound, midi.get (), performer.songPlayer ());
    while (!window.isClosed () && interrupted == 0)
    {
        window.idle (turn);
        for (const std::string& sentence : watch.look (std::chrono::steady_clock::now ()))
            voice.mention (sentence);
        window.setNote (watch.note ());
    }
}
}

int main (int argc, char** argv)
{
    const Voice voice;
    std::signal (SIGINT, &interrupt);
    std::signal (SIGTERM, &interrupt);
    try
    {
        Options options;
        if (const auto ending = parseOptions (platform::utf8Arguments (argc, argv), options))
        {
            voice.say ((ending->status == 0 ? "" : "brimvale: ") + ending->text +
                           (ending->status == 0 ? "" : "\n"),
                       ending->status == 0 ? stdout : stderr);
            return ending->status;
        }
        if (options.listDevices)
            listDevices (voice);
        else
            play (options, voice);
        return 0;
    }
    catch (const std::exception& error)
    {
        voice.complain (error.what ());
        return failedStatus;
    }
}
