#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

#include "engine/Engine.h"
#include "instrument/BankStore.h"
#include "instrument/ChangeQueue.h"
#include "instrument/Commands.h"
#include "instrument/EditorLink.h"
#include "instrument/MidiLearn.h"
#include "instrument/Services.h"
#include "instrument/StoredSettings.h"
#include "instrument/UserBank.h"

namespace instrument
{
using engine::Additions;

// What the instrument asks of the plug-in format around it. Audio thread.
class FormatHost
{
public:
    virtual std::optional<engine::Transport> transport () = 0; // empty when the host tells none

protected:
    ~FormatHost () = default;
};

// The instrument without a plug-in format: parameters, the bank of 128 programs, commands and MIDI bindings
// around one Engine. Formats and the editor call it.
//
// The engine belongs to the audio thread. A change is stored where everybody sees it at once; what comes from
// within an audio call reaches the engine at once, everything else through a queue that is emptied where the
// next audio call begins. Nothing waits for anything.
class Instrument final : private engine::EngineHost
{
public:
    // Takes the user default bank or the factory bank and selects program 0. `atStart` is what a new instance
    // has switched on; a song brings its own.
    Instrument (Services surroundings, FormatHost& formatHost, Additions atStart = {});
    Instrument (const Instrument&) = delete;
    Instrument& operator= (const Instrument&) = delete;

    // Before the first other call, or never. Not owned; null: none.
    void attachEditor (EditorLink* link) { editor = link; }

    // Any thread

    // The one door for every change: commands, store rule, engine, editor. NaN is ignored. Commands show
    // message boxes and belong to the user-interface thread.
    void setParameter (std::int32_t index, float value);
    float getParameter (std::int32_t index) const;   // as stored; 0.0 outside the parameters
    float parameterValue (std::int32_t index) const; // as the engine uses it: finite and within its range
    void setProgram (std::int32_t program);          // outside 0..127: ignored
    std::int32_t getProgram () const { return currentProgram.load (std::memory_order_relaxed); }
    bool setSampleRate (float hz); // outside 1000..1000000 Hz: false, stays as it was
    std::uint32_t midiController (std::int32_t index) const; // bound controller, 0: none
    Additions additions () const { return wantedAdditions.load (std::memory_order_relaxed); }
    void setAdditions (Additions wanted) { wantedAdditions.store (wanted, std::memory_order_relaxed); }
    std::int32_t learnTarget () const { return midiLearn.armed (); } // parameter that waits for one, -1: none

    // User-interface thread

    std::string parameterName (std::int32_t index) const; // blanks included; empty outside the parameters
    std::string programName (std::int32_t program) const; // 0..127
    void setProgramName (std::string_view name);          // of the current program; 24 characters count
    bool copyProgram (std::int32_t destination);          // false outside 0..127

    // The bank's image or the current program's record, as a copy that is valid until the next call. The
    // image also tells the current program and the additions, in bytes that are spare in the bank itself.
    std::span<const std::byte> getChunk (bool isPreset);

    // Takes such an image back. A shorter one overwrites its own length and nothing else, which lets a host
    // keep the beginning of a bank; a longer one is refused with a message.
    void setChunk (const void* data, std::int64_t byteSize, bool isPreset);

    void refreshVoiceFilters (); // applies the current cutoff setting to every voice's filter

    platform::SettingsStore& settings () { return *services.settings; }
    platform::Answer showMessage (const char* text, const char* title, platform::Buttons buttons) const
    {
        return services.showMessage (text, title, buttons);
    }

    // What commands ask for
    void saveStoredDefaults () { storedSettings.save (); }
    void saveUserBank () const;
    void reloadFactoryBank ();
    void armLearn (std::int32_t index) { midiLearn.arm (index); }
    void forgetController (std::int32_t index);
    void forgetAllControllers ();

    // Audio thread

    // Takes the events of the next block; the list must outlive the next render.
    void processEvents (const engine::EventList* events);

    // The next frames into both outputs; null ones are left out.
    void render (float* left, float* right, std::int32_t frames);

    void silence (); // every voice at once; held keys are forgotten

private:
    class AudioCall;

    // EngineHost
    std::optional<engine::Transport> transport () override { return format.transport (); }
    float sampleRate () const override { return hostSampleRate.load (std::memory_order_relaxed); }
    void programChange (int program) override { setProgram (program); }
    bool controllerReceived (std::uint32_t controller, float value) override;
    void parameterReceived (std::int32_t index, float value) override { setParameter (index, value); }
    void keyStarted (int note) override;
    void keyEnded (int note) override;
    void allKeysEnded () override;

    std::optional<std::int32_t> takeBank (const void* data, std::size_t bytes);
    void loadBank (int resourceId, bool tryUserFile, bool askUser);
    void readFactoryBank (int resourceId);
    void refreshProgramList ();
    void refreshLearnMenus ();
    void showError (const char* text) const;
    void tellEditor (std::int32_t index, float value);

    Change selectionOf (std::int32_t program) const;
    void send (const Change& change);
    void apply (const Change& change);
    void beginAudioCall ();
    void takeChanges ();
    void settle (std::uint64_t touched);

    FormatHost& format;
    Services services;
    BankStore store;
    MidiLearn midiLearn{ store };
    UserBank userBank{ services };
    StoredSettings storedSettings{ services, store };
    Commands commands{ *this };
    EditorLink* editor = nullptr;
    BankImage bankCopy; // what getChunk handed out last
    ProgramRecord recordCopy;

    // Written and read by any thread
    std::atomic<std::int32_t> currentProgram = 0;
    std::atomic<Additions> wantedAdditions;
    std::atomic<float> hostSampleRate = 44100.0f; // Hz
    std::atomic<float> voicesTold = 1.0f;         // Voices as the editor last heard of it
    std::atomic<std::uintptr_t> audioThread;      // that is within an audio call, 0: none
    ChangeQueue changes;

    // Audio thread
    engine::Engine engine;
    std::int32_t engineProgram = 0; // that the engine plays
};
}
