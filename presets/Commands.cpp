// The command channel: what the panel's menus ask for through parameter indices above the parameters.
#include "plugin/VstSynth.h"
#include "resources/ResourceIds.h"

namespace
{
constexpr char warning[] = "Warning!";

bool isCommand (float value, MainMenuCommand command)
{
    return value == static_cast<float> (command);
}
}

// The confirmations go ahead whatever is pressed; Cancel does not cancel. That is meant. A system that can
// show no box counts as an answer, too.
void VstSynth::handleCommand (VstInt32 index, float value)
{
    const auto announce = [this] (const char* question)
    { services.showMessage (question, warning, platform::Buttons::okCancel); };

    if (index == commandLearn)
    {
        armOrForget (value);
        return;
    }
    if (index != commandMainMenu)
        return;
    if (isCommand (value, menuSaveControllerPresets))
    {
        announce ("Save Actual Values as Defaults?");
        saveStoredDefaults ();
    }
    else if (isCommand (value, menuMidiForget))
    {
        announce ("Forget Learned MidiCC?");
        forgetAllControllers ();
    }
    else if (isCommand (value, menuLoadFactoryBank))
    {
        announce ("Reload Factory Presets?");
        loadBank (factoryBankId, false, false);
        setProgram (currentProgram);
        refreshProgramList ();
    }
    else if (isCommand (value, menuSaveDefaultBank))
    {
        announce ("Save Current Presets as User-Default Bank?");
        saveUserBank ();
    }
}
