#include "instrument/Commands.h"

#include "instrument/Instrument.h"

namespace instrument
{
using namespace parameters;

namespace
{
constexpr float forgetFrom = 999.0f;    // values of commandLearn from here on forget a binding
constexpr float forgetOffset = 1000.0f; // plus the parameter's index
}

// A command goes ahead whatever is pressed, Cancel too: the boxes tell rather than ask, and players who know
// the instrument press either. Only a box that the system failed to show stops it.
bool Commands::isConfirmed (const char* question) const
{
    return instrument.showMessage (question, "Warning!", platform::Buttons::okCancel) !=
           platform::Answer::none;
}

void Commands::handleCommand (std::int32_t index, float value)
{
    if (index == commandLearn)
        learnOrForget (value);
    if (index != commandMainMenu)
        return;
    const auto chosen = [value] (MainMenuCommand command) { return value == static_cast<float> (command); };
    if (chosen (menuSaveControllerPresets) && isConfirmed ("Save Actual Values as Defaults?"))
        instrument.saveStoredDefaults ();
    else if (chosen (menuMidiForget) && isConfirmed ("Forget Learned MidiCC?"))
        instrument.forgetAllControllers ();
    else if (chosen (menuLoadFactoryBank) && isConfirmed ("Reload Factory Presets?"))
        instrument.reloadFactoryBank ();
    else if (chosen (menuSaveDefaultBank) && isConfirmed ("Save Current Presets as User-Default Bank?"))
        instrument.saveUserBank ();
}

void Commands::learnOrForget (float value)
{
    if (value >= forgetFrom)
        instrument.forgetController (truncateToInt (value - forgetOffset));
    else
        instrument.armLearn (truncateToInt (value));
}
}
