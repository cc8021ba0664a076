#include "plugin/VstSynth.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "resources/ResourceIds.h"

namespace
{
constexpr char productName[] = "Brimvale";
constexpr char vendorName[] = "corvanex.com";
constexpr VstInt32 uniqueId = fourCharacterCode ('Q', 'n', 'r', 'k');
constexpr float lowestSampleRate = 1000.0f; // Hz
constexpr float highestSampleRate = 1000000.0f;

// The host's message for a turn of the mouse wheel.
constexpr VstInt32 wheelIndex = fourCharacterCode ('s', 't', 'C', 'A');
constexpr VstIntPtr wheelValue = fourCharacterCode ('W', 'h', 'e', 'e');

// tempo, musical position and bar position
constexpr VstInt32 timeFlags = kVstPpqPosValid | kVstTempoValid | kVstBarsValid;

// Copies a text and its terminator; the host's buffer holds `longest` characters and one byte more.
void copyTo (char* buffer, std::string_view text, std::size_t longest)
{
    const std::size_t length = text.copy (buffer, longest);
    buffer[length] = 0;
}
}

VstSynth::VstSynth (AudioMasterCallback host, Services surroundings)
    : AudioEffectX (host, programCount, parameterCount),
      services (std::move (surroundings)),
      engine (*this)
{
    resetToInitialValues (bank);
    programsAreChunks (true);

    // Parameter traffic is still held off here, so of the stored settings the bindings arrive and the default
    // values do not. That is meant: a new instance sounds as its bank says.
    readStoredDefaults ();
    loadBank (factoryBankId, true, false);

    if (host != nullptr)
    {
        setNumInputs (0);
        setNumOutputs (2);
        canProcessReplacing (true);
        isSynth (true);
        hasVu (false);
        hasClip (false);
        setUniqueID (uniqueId);
    }
    if (services.createEditor != nullptr)
        synthEditor = services.createEditor (*this); // which attaches itself
    engine.initialise ();
    initialising = false;
    setProgram (0);
}

void VstSynth::resume ()
{
    if (!initialising)
        wantEvents (1);
}

void VstSynth::setSampleRate (float hz)
{
    if (hz >= lowestSampleRate && hz <= highestSampleRate)
        AudioEffectX::setSampleRate (hz);
}

// Older hosts call the accumulating entry; it overwrites just as the replacing one does.
void VstSynth::process (float** inputs, float** outputs, VstInt32 frames)
{
    processReplacing (inputs, outputs, frames);
}

void VstSynth::processReplacing (float** /*inputs*/, float** outputs, VstInt32 frames)
{
    engine.renderBlock (outputs, frames);
}

VstInt32 VstSynth::processEvents (VstEvents* events)
{
    if (!initialising)
        engine.processEvents (events);
    return 1;
}

void VstSynth::setParameter (VstInt32 index, float value)
{
    if (initialising || std::isnan (value))
        return;
    handleCommand (index, value);
    engine.parameterChanging (index, value);
    value = store (index, value);
    const float usable = isParameter (index) ? usableValue (index, value) : value;
    if (engine.parameterChanged (index, usable) && synthEditor != nullptr)
        synthEditor->setParameter (index, usable);
}

float VstSynth::store (VstInt32 index, float value)
{
    if (!isParameter (index))
        return value;
    ParameterSlot& slot = bank.slots[static_cast<std::size_t> (index)];
    value = storableValue (index, value, slot.unclamped != 0);
    (slot.perProgram != 0 ? program ().values[static_cast<std::size_t> (index)] : slot.value) = value;
    return value;
}

float VstSynth::storedValue (VstInt32 index) const
{
    const auto i = static_cast<std::size_t> (index);
    const ParameterSlot& slot = bank.slots[i];
    return slot.perProgram != 0 ? bank.programs[static_cast<std::size_t> (currentProgram)].values[i]
                                : slot.value;
}

float VstSynth::getParameter (VstInt32 index)
{
    return isParameter (index) ? storedValue (index) : 0.0f;
}

float VstSynth::parameterValue (VstInt32 index) const
{
    return usableValue (index, storedValue (index));
}

void VstSynth::getParameterLabel (VstInt32 /*index*/, char* text)
{
    *text = 0;
}

void VstSynth::getParameterDisplay (VstInt32 index, char* text)
{
    constexpr std::size_t longest = 23; // as the names, more than the interface's 8; every host holds them
    constexpr int decimals = 3;
    if (!isParameter (index))
    {
        *text = 0;
        return;
    }
    // Not printf: it would write the decimal comma of the host's language.
    std::array<char, 64> digits;
    const auto end = std::to_chars (digits.data (), digits.data () + digits.size (), getParameter (index),
                                    std::chars_format::fixed, decimals);
    copyTo (text, { digits.data (), static_cast<std::size_t> (end.ptr - digits.data ()) }, longest);
}

// The whole name, blanks included. The names are longer than the interface's 8 characters on purpose.
void VstSynth::getParameterName (VstInt32 index, char* text)
{
    if (isParameter (index))
        copyTo (text, bank.slots[static_cast<std::size_t> (index)].nameView (), ParameterSlot::nameBytes - 1);
    else
        *text = 0;
}

void VstSynth::setProgram (VstInt32 newProgram)
{
    if (newProgram < 0 || newProgram >= programCount)
        return;
    currentProgram = newProgram;
    for (VstInt32 index = 0; index < parameterCount; ++index)
        setParameter (index, parameterValue (index));
    if (synthEditor != nullptr)
        synthEditor->markCurrentProgram ();
}

void VstSynth::setProgramName (const char* name)
{
    program ().setName (name);
}

void VstSynth::getProgramName (char* text)
{
    copyTo (text, program ().nameView (), ProgramRecord::nameBytes);
}

std::string_view VstSynth::programName (VstInt32 index) const
{
    return bank.programs[static_cast<std::size_t> (index)].nameView ();
}

bool VstSynth::getProgramNameIndexed (VstInt32 /*category*/, VstInt32 index, char* text)
{
    if (index < 0 || index >= programCount)
        return false;
    copyTo (text, programName (index), ProgramRecord::nameBytes);
    return true;
}

bool VstSynth::copyProgram (VstInt32 destination)
{
    if (destination < 0 || destination >= programCount)
        return false;
    bank.programs[static_cast<std::size_t> (destination)] = program ();
    return true;
}

VstInt32 VstSynth::getChunk (void** data, bool isPreset)
{
    if (isPreset)
    {
        *data = &program ();
        return sizeof (ProgramRecord);
    }
    *data = &bank;
    return sizeof (BankImage);
}

// A block that is too short overwrites its own length and nothing else. That is meant; so is the answer 1
// after an error.
VstInt32 VstSynth::setChunk (const void* data, VstIntPtr byteSize, bool isPreset)
{
    const std::size_t most = isPreset ? sizeof (ProgramRecord) : sizeof (BankImage);
    if (byteSize < 0 || static_cast<std::size_t> (byteSize) > most)
    {
        showError (isPreset ? "Can't load preset, wrong file size!" : "Can't load bank, wrong file size!");
    }
    else
    {
        std::memmove (isPreset ? static_cast<void*> (&program ()) : &bank, data,
                      static_cast<std::size_t> (byteSize));
        setProgram (currentProgram);
        refreshProgramList ();
    }
    refreshLearnMenus ();
    return 1;
}

void VstSynth::refreshProgramList ()
{
    if (synthEditor == nullptr)
        return;
    for (VstInt32 index = 0; index < programCount; ++index)
    {
        char entry[64];
        const std::string_view name = programName (index);
        std::snprintf (entry, sizeof entry, "%03d %.*s", static_cast<int> (index) + 1,
                       static_cast<int> (name.size ()), name.data ());
        synthEditor->setProgramEntry (index, entry);
    }
    synthEditor->markCurrentProgram ();
}

bool VstSynth::getOutputProperties (VstInt32 index, VstPinProperties* properties)
{
    if (index < 0 || index >= record.numOutputs)
        return false;
    std::snprintf (properties->label, sizeof properties->label, "%s %1d", productName,
                   static_cast<int> (index) + 1);
    properties->flags = kVstPinIsActive | kVstPinIsStereo;
    return true;
}

bool VstSynth::getEffectName (char* text)
{
    copyTo (text, productName, kVstMaxEffectNameLen);
    return true;
}

bool VstSynth::getVendorString (char* text)
{
    copyTo (text, vendorName, kVstMaxVendorStrLen);
    return true;
}

bool VstSynth::getProductString (char* text)
{
    copyTo (text, productName, kVstMaxProductStrLen);
    return true;
}

VstIntPtr VstSynth::vendorSpecific (VstInt32 index, VstIntPtr value, void* /*ptr*/, float opt)
{
    const bool isWheel = index == wheelIndex && value == wheelValue;
    return isWheel && getEditor () != nullptr && getEditor ()->onWheel (opt) ? 1 : 0;
}

VstInt32 VstSynth::canDo (const char* text)
{
    const std::string_view question = text;
    return question == "receiveVstEvents" || question == "receiveVstMidiEvent" ? 1 : -1;
}

void VstSynth::refreshVoiceFilters ()
{
    engine.refreshVoiceFilters ();
}

VstTimeInfo* VstSynth::timeInfo ()
{
    return getTimeInfo (timeFlags);
}

void VstSynth::notifyEditor (std::int32_t index, float value)
{
    if (synthEditor != nullptr)
        synthEditor->setParameter (index, value);
}

void VstSynth::showError (const char* text) const
{
    services.showMessage (text, "Error!", platform::Buttons::ok);
}
