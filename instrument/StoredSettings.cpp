#include "instrument/StoredSettings.h"

#include <string>

namespace instrument
{
using namespace parameters;

namespace
{
constexpr std::string_view settingsKey = "Brimvale";
constexpr float storedUnit = 10000.0f; // a value is stored in ten-thousandths

std::string bindingName (std::string_view parameterName)
{
    return "MidiCC-" + std::string (parameterName);
}
}

// Numbers are stored raised by one, so that 0 can mean that there is none.
bool StoredSettings::writeRegistryDword (std::string_view name, std::uint32_t number)
{
    return services.settings->write (settingsKey, name, number + 1);
}

void StoredSettings::showError (const char* text) const
{
    services.showMessage (text, "Error!", platform::Buttons::ok);
}

void StoredSettings::readStoredDefaults ()
{
    for (const ParamRow& row : paramTable)
    {
        const std::uint32_t stored = services.settings->read (settingsKey, bindingName (row.name));
        if (stored != 0)
            store.setMidiController (row.index, stored - 1);
    }
}

void StoredSettings::save ()
{
    for (const ParamRow& row : paramTable)
    {
        const std::string name = store.parameterName (row.index);
        if (store.isKeptAsDefault (row.index))
        {
            const float value = usableValue (row.index, store.slotValue (row.index));
            const std::int32_t number = truncateToInt (value * storedUnit);
            if (!writeRegistryDword (name, static_cast<std::uint32_t> (number)))
                showError ("Error saving registery!");
        }
        if (!writeRegistryDword (bindingName (name), store.midiController (row.index)))
            showError ("Error saving Midi-CC registery!");
    }
    if (!services.settings->commit ())
        showError ("Error saving registery!");
    services.showMessage ("Default Values Saved!", "Ok!", platform::Buttons::ok);
}
}
