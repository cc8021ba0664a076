// The command channel: what the panel's menus ask for through parameter indices above the parameters.
#include "plugin/VstSynth.h"
#include "resources/ResourceIds.h"

using platform::Answer;

namespace
{
constexpr char warning[] = "Warning!";

bool isCommand (float value, MainMenuCommand command)
{
    return value == static_cast<float> (command);
}
}

// The confirmations go ahead whatever is pressed; Cancel does not cancel. That is meant. Only a box that the
// system failed to show stops the command.
void VstSynth::handleCommand (VstInt32 index, float value)
{
    const auto answered = [this] (const char* question)
    { return services.showMessage (question, warning, platform::Buttons::okCancel) != Answer::none; };

    if (index == commandLearn)
    {
        armOrForget (value);
        return;
    }
    if (index != commandMainMenu)
        return;
    if (isCommand (value, menuSaveControllerPresets) && answered ("Save Actual Values as Defaults?"))
        saveStoredDefaults ();
    else if (isCommand (value, menuMidiForget) && answered ("Forget Learned MidiCC?"))
        forgetAllControllers ();
    else if (isCommand (value, menuLoadFactoryBank) && answered ("Reload Factory Presets?"))
    {
        loadBank (factoryBankId, false, false);
        setProgram (currentProgram);
        refreshProgramList ();
    }
    else if (isCommand (value, menuSaveDefaultBank) &&
             answered ("Save Current Presets as User-Default Bank?"))
        saveUserBank ();
}
