#include "instrument/Instrument.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "platform/Resources.h"
#include "platform/Thread.h"
#include "resources/ResourceIds.h"

namespace instrument
{
using namespace parameters;

namespace
{
constexpr float lowestSampleRate = 1000.0f; // Hz
constexpr float highestSampleRate = 1000000.0f;
constexpr float notesPerUnit = 128.0f;   // how notes travel to the editor
constexpr std::int32_t allPrograms = -1; // of a plug-in-wide change
constexpr float keyboardRelease = -1.0f; // the on-screen keyboard holds no key
constexpr std::uint64_t everyParameter = (std::uint64_t{ 1 } << parameterCount) - 1;

engine::WaveTables loadWaveTables ()
{
    const auto load = [] (int id) { return engine::makeWaveTable (platform::findResource ("WAV", id)); };
    return { load (pulseWaveId), load (sawWaveId), load (noiseWaveId) };
}

constexpr std::uint64_t bitOf (std::int32_t index)
{
    return std::uint64_t{ 1 } << index;
}
}

// Marks the calling thread as the one that owns the engine for as long as the call lasts.
class Instrument::AudioCall
{
public:
    explicit AudioCall (Instrument& owner) : instrument (owner)
    {
        instrument.audioThread.store (platform::currentThread (), std::memory_order_relaxed);
    }
    ~AudioCall () { instrument.audioThread.store (0, std::memory_order_relaxed); }
    AudioCall (const AudioCall&) = delete;
    AudioCall& operator= (const AudioCall&) = delete;

private:
    Instrument& instrument;
};

Instrument::Instrument (Services surroundings, FormatHost& formatHost, Additions atStart)
    : format (formatHost),
      services (std::move (surroundings)),
      wantedAdditions (atStart),
      audioThread (0),
      engine (loadWaveTables (), *this)
{
    BankImage initial;
    resetToInitialValues (initial);
    store.write (&initial, sizeof initial);
    storedSettings.readStoredDefaults ();
    loadBank (factoryBankId, true, false);

    const AudioCall call (*this); // nobody else has the engine yet
    setProgram (0);
}

bool Instrument::setSampleRate (float hz)
{
    const bool isPossible = hz >= lowestSampleRate && hz <= highestSampleRate;
    if (isPossible)
        hostSampleRate.store (hz, std::memory_order_relaxed);
    return isPossible;
}

// --- Parameters and programs

void Instrument::setParameter (std::int32_t index, float value)
{
    if (std::isnan (value))
        return;
    commands.handleCommand (index, value);
    Change change;
    change.index = index;
    change.value = value;
    if (isParameter (index))
    {
        const bool unclamped = store.isUnclamped (index);
        const std::int32_t program = getProgram ();
        change.program = store.isPerProgram (index) ? program : allPrograms;
        change.unclamped = unclamped ? bitOf (index) : 0;
        const float stored = storableValue (index, value, unclamped);
        store.setValue (program, index, stored);
        send (change);
        value = usableValue (index, stored);
    }
    else if (index == commandKeyboard)
    {
        change.kind = Change::Kind::keyboard;
        send (change);
    }
    tellEditor (index, value);
}

// Voices set to what it is already changes nothing, and the editor hears nothing of it.
void Instrument::tellEditor (std::int32_t index, float value)
{
    if (index == paramVoices && voicesTold.exchange (value, std::memory_order_relaxed) == value)
        return;
    if (editor != nullptr)
        editor->setParameter (index, value);
}

float Instrument::getParameter (std::int32_t index) const
{
    return isParameter (index) ? store.value (getProgram (), index) : 0.0f;
}

float Instrument::parameterValue (std::int32_t index) const
{
    return usableValue (index, store.value (getProgram (), index));
}

Change Instrument::selectionOf (std::int32_t program) const
{
    Change change;
    change.kind = Change::Kind::selection;
    change.program = program;
    for (std::int32_t index = 0; index < parameterCount; ++index)
    {
        change.values[static_cast<std::size_t> (index)] = usableValue (index, store.value (program, index));
        if (store.isUnclamped (index))
            change.unclamped |= bitOf (index);
    }
    return change;
}

void Instrument::setProgram (std::int32_t program)
{
    if (program < 0 || program >= programCount)
        return;
    currentProgram.store (program, std::memory_order_relaxed);
    const Change selection = selectionOf (program);
    for (std::int32_t index = 0; index < parameterCount; ++index)
    {
        // The record that is selected comes out as if each of its values had been set. A value that somebody
        // sets meanwhile stays.
        const float found = store.value (program, index);
        const float wanted = storableValue (index, usableValue (index, found), store.isUnclamped (index));
        if (store.isPerProgram (index) && found != wanted)
            store.amendRecord (program, index, found, wanted);
    }
    send (selection);
    for (std::int32_t index = 0; index < parameterCount; ++index)
        tellEditor (index, usableValue (index, store.value (program, index)));
    if (editor != nullptr)
        editor->markCurrentProgram ();
}

std::string Instrument::parameterName (std::int32_t index) const
{
    return isParameter (index) ? store.parameterName (index) : std::string ();
}

std::string Instrument::programName (std::int32_t program) const
{
    return store.programName (program);
}

void Instrument::setProgramName (std::string_view name)
{
    store.setProgramName (getProgram (), name);
    if (editor != nullptr)
        editor->markCurrentProgram ();
}

bool Instrument::copyProgram (std::int32_t destination)
{
    if (destination < 0 || destination >= programCount)
        return false;
    store.copyProgram (getProgram (), destination);
    return true;
}

// --- The bank

std::span<const std::byte> Instrument::getChunk (bool isPreset)
{
    if (isPreset)
    {
        store.readProgram (getProgram (), recordCopy);
        return std::as_bytes (std::span (&recordCopy, 1));
    }
    store.read (bankCopy);
    const Additions on = additions ();
    bankCopy.slots[programSlot].spare = static_cast<std::uint8_t> (getProgram ());
    bankCopy.slots[pedalAndWheelSlot].spare = on.pedalAndWheel ? 1 : 0;
    bankCopy.slots[songLockSlot].spare = on.songLock ? 1 : 0;
    return std::as_bytes (std::span (&bankCopy, 1));
}

void Instrument::setChunk (const void* data, std::int64_t byteSize, bool isPreset)
{
    const std::int64_t most = isPreset ? sizeof (ProgramRecord) : sizeof (BankImage);
    if (byteSize < 0 || byteSize > most)
    {
        showError (isPreset ? "Can't load preset, wrong file size!" : "Can't load bank, wrong file size!");
    }
    else
    {
        const auto bytes = static_cast<std::size_t> (byteSize);
        std::int32_t program = getProgram ();
        if (isPreset)
            store.writeProgram (program, data, bytes);
        else
            program = takeBank (data, bytes).value_or (program);
        setProgram (program);
        refreshProgramList ();
    }
    refreshLearnMenus ();
}

// A whole bank tells which program was selected when it was handed out: hosts that keep the chunk and no
// program number would else write the values that they saved over program 0. 0 says nothing, as in banks that
// know nothing of this. It also tells which additions the song has; 0 is off, so that older songs sound as
// they did.
std::optional<std::int32_t> Instrument::takeBank (const void* data, std::size_t bytes)
{
    BankImage image;
    std::memcpy (&image, data, bytes);
    const std::int32_t program = image.slots[programSlot].spare;
    const Additions on = { image.slots[pedalAndWheelSlot].spare == 1, image.slots[songLockSlot].spare == 1 };
    for (const std::size_t slot : { programSlot, pedalAndWheelSlot, songLockSlot })
        image.slots[slot].spare = 0;
    store.write (&image, bytes);
    const bool isWhole = bytes == sizeof image;
    if (isWhole)
        setAdditions (on);
    const bool tells = isWhole && program > 0 && program < programCount;
    return tells ? std::optional (program) : std::nullopt;
}

void Instrument::loadBank (int resourceId, bool tryUserFile, bool askUser)
{
    BankImage image;
    store.read (image);
    if (tryUserFile && userBank.read (image, askUser))
        store.write (&image, sizeof image);
    else
        readFactoryBank (resourceId);
}

void Instrument::readFactoryBank (int resourceId)
{
    const std::span<const std::byte> records = platform::findResource ("Bank", resourceId);
    if (records.size () < factoryBankBytes)
        return;
    for (std::int32_t program = 0; program < programCount; ++program)
        store.writeProgram (program,
                            records.data () + sizeof (ProgramRecord) * static_cast<std::size_t> (program),
                            sizeof (ProgramRecord));
}

void Instrument::reloadFactoryBank ()
{
    loadBank (factoryBankId, false, false);
    setProgram (getProgram ());
    refreshProgramList ();
}

void Instrument::saveUserBank () const
{
    BankImage image;
    store.read (image);
    userBank.save (image);
}

void Instrument::refreshProgramList ()
{
    if (editor == nullptr)
        return;
    for (std::int32_t program = 0; program < programCount; ++program)
    {
        char entry[64];
        std::snprintf (entry, sizeof entry, "%03d %s", static_cast<int> (program) + 1,
                       programName (program).c_str ());
        editor->setProgramEntry (program, entry);
    }
    editor->markCurrentProgram ();
}

void Instrument::showError (const char* text) const
{
    services.showMessage (text, "Error!", platform::Buttons::ok);
}

// --- MIDI bindings

std::uint32_t Instrument::midiController (std::int32_t index) const
{
    return isParameter (index) ? store.midiController (index) : 0;
}

void Instrument::forgetController (std::int32_t index)
{
    midiLearn.forget (index);
    refreshLearnMenus ();
}

void Instrument::forgetAllControllers ()
{
    midiLearn.forgetAll ();
    refreshLearnMenus ();
}

void Instrument::refreshLearnMenus ()
{
    if (editor != nullptr)
        editor->refreshLearnMenus ();
}

// The message that completes a learn sets the parameter at once.
bool Instrument::controllerReceived (std::uint32_t controller, float value)
{
    if (midiLearn.complete (controller))
        refreshLearnMenus ();
    bool bound = false;
    for (std::int32_t index = 0; index < parameterCount; ++index)
    {
        if (!midiLearn.isBound (index, controller))
            continue;
        setParameter (index, value);
        bound = true;
    }
    return bound;
}

void Instrument::keyStarted (int note)
{
    tellEditor (commandKeyOn, static_cast<float> (note) / notesPerUnit);
}

void Instrument::keyEnded (int note)
{
    tellEditor (commandKeyOff, static_cast<float> (note) / notesPerUnit);
}

void Instrument::allKeysEnded ()
{
    tellEditor (commandVoiceMode, 1.0f);
}

// --- The way to the engine

void Instrument::refreshVoiceFilters ()
{
    Change change;
    change.kind = Change::Kind::refreshFilters;
    send (change);
}

void Instrument::send (const Change& change)
{
    if (audioThread.load (std::memory_order_relaxed) == platform::currentThread ())
        apply (change);
    else
        changes.send (change);
}

void Instrument::apply (const Change& change)
{
    switch (change.kind)
    {
    case Change::Kind::parameter:
        // A program that is not played keeps what was stored, and is heard when it is selected.
        if (change.program == allPrograms || change.program == engineProgram)
            engine.parameterChange (change.index, change.value, change.unclamped != 0);
        break;
    case Change::Kind::selection:
        engineProgram = change.program;
        engine.selectProgram (change.values, change.unclamped);
        break;
    case Change::Kind::keyboard:
        engine.playKeyboard (change.value);
        break;
    case Change::Kind::refreshFilters:
        engine.refreshVoiceFilters ();
        break;
    }
}

// At most what the queue holds, so that senders who never pause cannot hold the audio thread. A queue that
// ran over has lost something: the rest of it is thrown away, no key stays held, and the store tells
// everything.
void Instrument::takeChanges ()
{
    std::uint64_t touched = 0;
    bool lost = changes.takeOverflow ();
    Change change;
    for (std::uint32_t taken = 0; taken < ChangeQueue::capacity && changes.next (change); ++taken)
    {
        if (lost)
            continue;
        apply (change);
        if (change.kind == Change::Kind::parameter)
            touched |= bitOf (change.index);
        else if (change.kind == Change::Kind::selection)
            touched = everyParameter;
        lost = changes.takeOverflow ();
    }
    if (lost)
    {
        engine.playKeyboard (keyboardRelease);
        apply (selectionOf (getProgram ()));
    }
    else if (touched != 0)
    {
        settle (touched);
    }
}

// An older change in the queue must not outlive a newer one that overtook it on its way into the store.
void Instrument::settle (std::uint64_t touched)
{
    const std::int32_t program = getProgram ();
    if (touched == everyParameter && program != engineProgram)
    {
        apply (selectionOf (program));
        return;
    }
    for (std::int32_t index = 0; index < parameterCount; ++index)
    {
        const float stored = usableValue (index, store.value (program, index));
        if ((touched & bitOf (index)) != 0 && engine.parameterValue (index) != stored)
            engine.parameterChange (index, stored, store.isUnclamped (index));
    }
}

void Instrument::beginAudioCall ()
{
    engine.setAdditions (additions ());
    takeChanges ();
}

void Instrument::processEvents (const engine::EventList* events)
{
    const AudioCall call (*this);
    beginAudioCall ();
    engine.processEvents (events);
}

void Instrument::render (float* left, float* right, std::int32_t frames)
{
    const AudioCall call (*this);
    beginAudioCall ();
    engine.renderBlock (left, right, frames);
}

void Instrument::silence ()
{
    const AudioCall call (*this);
    beginAudioCall ();
    engine.silence ();
}
}
