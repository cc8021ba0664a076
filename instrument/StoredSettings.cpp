// Settings that belong to the user and to no bank: defaults of the plug-in-wide parameters and MIDI bindings.
#include <string>

#include "plugin/VstSynth.h"

namespace
{
constexpr std::string_view settingsKey = "Brimvale";
constexpr std::uint32_t storedUnit = 10000; // a value is stored in ten-thousandths

std::string bindingName (const char* parameterName)
{
    return std::string ("MidiCC-") + parameterName;
}
}

// Numbers are stored raised by one, so that 0 can mean that there is none.
bool VstSynth::writeRegistryDword (std::string_view subkey, std::string_view valueName, std::uint32_t number)
{
    return services.settings->write (subkey, valueName, number + 1);
}

std::uint32_t VstSynth::readRegistryDword (std::string_view subkey, std::string_view valueName) const
{
    return services.settings->read (subkey, valueName);
}

void VstSynth::readStoredDefaults ()
{
    for (const ParamRow& row : paramTable)
    {
        if (row.keptAsDefault)
        {
            // Divided as integers on purpose: 1.0 comes back as 1.0, anything below as 0.0.
            if (const std::uint32_t stored = readRegistryDword (settingsKey, row.name); stored != 0)
            {
                const std::uint32_t whole = (stored - 1) / storedUnit;
                setParameter (row.index, static_cast<float> (whole));
            }
        }
        if (const std::uint32_t stored = readRegistryDword (settingsKey, bindingName (row.name)); stored != 0)
            bank.slots[static_cast<std::size_t> (row.index)].midiController = stored - 1;
    }
}

void VstSynth::saveStoredDefaults ()
{
    for (const ParamRow& row : paramTable)
    {
        const ParameterSlot& slot = bank.slots[static_cast<std::size_t> (row.index)];
        if (slot.keptAsDefault != 0)
        {
            const std::int32_t number =
                truncateToInt (usableValue (row.index, slot.value) * static_cast<float> (storedUnit));
            if (!writeRegistryDword (settingsKey, slot.nameView (), static_cast<std::uint32_t> (number)))
                showError ("Error saving registery!");
        }
        const std::string name = bindingName (std::string (slot.nameView ()).c_str ());
        if (!writeRegistryDword (settingsKey, name, slot.midiController))
            showError ("Error saving Midi-CC registery!");
    }
    if (!services.settings->commit ())
        showError ("Error saving registery!");
    services.showMessage ("Default Values Saved!", "Ok!", platform::Buttons::ok);
}
