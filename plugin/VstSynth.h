#pragma once

#include <atomic>
#include <memory>
#include <string_view>

#include "engine/Engine.h"
#include "instrument/Bank.h"
#include "instrument/Services.h"
#include "instrument/SynthEditor.h"
#include "plugin/AudioEffectX.h"

using namespace parameters;
using namespace instrument;

// The instrument as the host sees it: the parameter store, the bank of 128 programs, the command channel and
// the MIDI bindings around one Engine. The host's user-interface thread calls everything but process,
// processReplacing and processEvents, which come on its audio thread; nothing here locks. A parameter
// change may come on either thread.
class VstSynth final : public AudioEffectX, private engine::EngineHost
{
public:
    explicit VstSynth (AudioMasterCallback host, Services surroundings = systemServices ());

    // Dispatch layer
    void resume () override;
    void setSampleRate (float hz) override; // outside 1000..1000000 Hz: stays as it was
    void process (float** inputs, float** outputs, VstInt32 frames) override;
    void processReplacing (float** inputs, float** outputs, VstInt32 frames) override;
    VstInt32 processEvents (VstEvents* events) override;

    // The one door for every change: commands, store rule, engine, editor, in this order. NaN is ignored.
    void setParameter (VstInt32 index, float value) override;
    float getParameter (VstInt32 index) override; // as stored; 0.0 outside the parameters
    void getParameterLabel (VstInt32 index, char* text) override;
    void getParameterDisplay (VstInt32 index, char* text) override;
    void getParameterName (VstInt32 index, char* text) override;

    void setProgram (VstInt32 program) override; // outside 0..127: ignored
    void setProgramName (const char* name) override;
    void getProgramName (char* text) override;
    bool getProgramNameIndexed (VstInt32 category, VstInt32 index, char* text) override;
    bool copyProgram (VstInt32 destination) override;
    VstInt32 getChunk (void** data, bool isPreset) override;
    VstInt32 setChunk (const void* data, VstIntPtr byteSize, bool isPreset) override;

    bool getOutputProperties (VstInt32 index, VstPinProperties* properties) override;
    bool getEffectName (char* text) override;
    bool getVendorString (char* text) override;
    bool getProductString (char* text) override;
    VstInt32 getVendorVersion () override { return 1; }
    VstIntPtr vendorSpecific (VstInt32 index, VstIntPtr value, void* ptr, float opt) override;
    VstInt32 canDo (const char* text) override;

    // Applies the current cutoff setting to every voice's filter.
    virtual void refreshVoiceFilters ();

    // For the editor and the bank commands. `program` is 0..127, `index` a parameter.
    std::string_view programName (VstInt32 program) const;
    std::uint32_t midiController (VstInt32 index) const; // bound controller, 0: none
    platform::SettingsStore& settings () { return *services.settings; }

    // The value that the engine uses: finite, and within 0..1 unless the parameter is unclamped.
    float parameterValue (VstInt32 index) const override;

    // Fills the bank: from the user default bank where that is wanted and there is one (asking first when
    // `askUser` is set), else from the factory bank resource. Applies nothing; call setProgram afterwards.
    void loadBank (int resourceId, bool tryUserFile, bool askUser);

    // False when there should be an editor and it could not be made.
    bool editorWasMade () const { return services.createEditor == nullptr || synthEditor != nullptr; }

private:
    // EngineHost
    VstTimeInfo* timeInfo () override;
    float hostSampleRate () const override { return getSampleRate (); }
    void reselectProgram () override { setProgram (currentProgram); }
    void programChange (int program) override { setProgram (program); }
    void controllerReceived (std::uint32_t controller, float value) override;
    void notifyEditor (std::int32_t index, float value) override;

    float storedValue (VstInt32 index) const;
    float store (VstInt32 index, float value); // answers the value as stored
    ProgramRecord& program () { return bank.programs[static_cast<std::size_t> (currentProgram)]; }
    void refreshProgramList ();
    void showError (const char* text) const;

    // presets/
    void handleCommand (VstInt32 index, float value);
    bool readUserBank (bool askUser);
    void readFactoryBank (int resourceId);
    void saveUserBank () const;
    std::filesystem::path userBankPath () const;
    void readStoredDefaults ();
    void saveStoredDefaults ();
    bool writeRegistryDword (std::string_view subkey, std::string_view valueName, std::uint32_t number);
    std::uint32_t readRegistryDword (std::string_view subkey, std::string_view valueName) const;

    // midilearn/
    void armOrForget (float value);
    void forgetAllControllers ();
    void refreshLearnMenus ();

    BankImage bank;
    Services services;
    bool initialising = true;                       // holds parameter traffic off while the object is built
    std::atomic<std::int32_t> midiLearnTarget = -1; // parameter waiting for a controller; set by both threads
    engine::Engine engine;
    std::unique_ptr<SynthEditor> synthEditor;
};
