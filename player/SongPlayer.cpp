#include "player/SongPlayer.h"

#include <algorithm>
#include <cmath>

#include "midi/Reader.h"

namespace player
{
namespace
{
constexpr std::uint8_t noteOn = 0x90;
constexpr std::uint8_t controlChange = 0xB0;
constexpr std::uint8_t programChange = 0xC0;
constexpr std::uint8_t pitchBend = 0xE0;
constexpr std::uint8_t kindBits = 0xF0;
constexpr std::uint8_t wheelController = 1;
constexpr std::uint8_t dataController = 6; // of the parameter whose number stands in the four from 98 on
constexpr std::uint8_t volumeController = 7;
constexpr std::uint8_t expressionController = 11;
constexpr std::uint8_t pedalController = 64;
constexpr std::uint8_t allNotesOff = 123;
constexpr std::uint8_t firstModeController = 120; // those from here on do something once and keep no value
constexpr std::uint8_t firstNumberController = 98;
constexpr std::uint8_t lastNumberController = 101;
constexpr std::uint8_t usualVolume = 100;
constexpr std::uint8_t middle = 64;
constexpr std::uint8_t most = 127;

constexpr double secondsUntilRest = 2.0; // after which a sound has died away

constexpr ShortMessage letGoOfKeys = { controlChange, allNotesOff, 0 };

// Whether two messages set the same thing. The instrument does not tell channels apart, nor does this.
bool setTheSame (const ShortMessage& first, const ShortMessage& second)
{
    const int kind = first[0] & kindBits;
    return kind == (second[0] & kindBits) && (kind != controlChange || first[1] == second[1]);
}

bool isSetting (const ShortMessage& message)
{
    const int kind = message[0] & kindBits;
    return (kind == controlChange && message[1] < firstModeController) || kind == programChange ||
           kind == pitchBend;
}

// Those that mean something in their order only.
bool isPartOfNumbered (const ShortMessage& message)
{
    return (message[0] & kindBits) == controlChange &&
           (message[1] == dataController ||
            (message[1] >= firstNumberController && message[1] <= lastNumberController));
}

// The last of each setting before a message, a program ahead of all others: controllers may turn its knobs.
std::vector<ShortMessage> stateBefore (std::span<const host::TimedMessage> messages)
{
    std::vector<ShortMessage> state;
    for (const host::TimedMessage& message : messages)
    {
        if (!isSetting (message.bytes))
            continue;
        std::erase_if (state, [&] (const ShortMessage& older)
                       { return setTheSame (older, message.bytes) && !isPartOfNumbered (older); });
        const bool isProgram = (message.bytes[0] & kindBits) == programChange;
        state.insert (isProgram ? state.begin () : state.end (), message.bytes);
    }
    return state;
}
}

std::shared_ptr<const Song> readSong (const std::filesystem::path& file, double sampleRate,
                                      bool withProgramChanges)
{
    const midi::Song source = midi::read (file);
    const std::u8string name = file.filename ().u8string ();
    Song song{ { name.begin (), name.end () }, host::TempoMap (source), {}, sampleRate, 0 };
    song.sequence = host::makeSequence (source, song.tempos, sampleRate, withProgramChanges);
    song.frames = static_cast<std::uint64_t> (std::ceil (song.sequence.seconds * sampleRate));
    if (!song.sequence.messages.empty ())
        song.frames = std::max (song.frames, song.sequence.messages.back ().sample + 1);
    return std::make_shared<const Song> (std::move (song));
}

SongPlayer::SongPlayer ()
    : lasting ({ { { { controlChange, pedalController, 0 } },
                   { { controlChange, wheelController, 0 } },
                   { { controlChange, volumeController, usualVolume } },
                   { { controlChange, expressionController, most } },
                   { { pitchBend, 0, middle } } } })
{
}

void SongPlayer::open (std::shared_ptr<const Song> newSong)
{
    pause ();
    opened = std::move (newSong);
    cueAt (0);
}

void SongPlayer::cueAt (std::uint64_t frame)
{
    const auto& messages = opened->sequence.messages;
    const auto first = std::ranges::lower_bound (messages, frame, {}, &host::TimedMessage::sample);
    auto next = std::make_unique<Cue> ();
    next->number = ++lastNumber;
    next->song = opened;
    next->start = frame;
    next->firstMessage = static_cast<std::size_t> (first - messages.begin ());
    next->state = stateBefore (std::span (messages).first (next->firstMessage));

    // The audio thread goes forward only: those before the one in use are not looked at any more.
    std::erase_if (cues, [used = inUse.load (std::memory_order_acquire)] (const auto& older)
                   { return older->number < used; });
    cues.push_back (std::move (next));
    newest.store (cues.back ().get (), std::memory_order_release);
}

std::uint64_t SongPlayer::frame () const
{
    if (cues.empty ())
        return 0;
    const Cue& last = *cues.back ();
    return inUse.load (std::memory_order_acquire) == last.number ? reached.load (std::memory_order_relaxed)
                                                                 : last.start;
}

void SongPlayer::play ()
{
    if (opened == nullptr || isPlaying ())
        return;
    const std::uint64_t place = frame ();
    cueAt (place < opened->frames ? place : 0);
    wanted.store (true, std::memory_order_release);
}

bool SongPlayer::isPlaying () const
{
    return wanted.load (std::memory_order_relaxed) && ended.load (std::memory_order_acquire) != lastNumber;
}

void SongPlayer::seek (double seconds)
{
    if (opened == nullptr)
        return;
    if (!isPlaying ()) // nor shall it be after its end
        pause ();
    const double last = static_cast<double> (opened->frames);
    cueAt (static_cast<std::uint64_t> (std::clamp (std::round (seconds * opened->sampleRate), 0.0, last)));
}

double SongPlayer::seconds () const
{
    return opened == nullptr ? 0.0 : static_cast<double> (frame ()) / opened->sampleRate;
}

void SongPlayer::take (const Cue& next)
{
    cue = &next;
    position = next.start;
    nextMessage = next.firstMessage;
    reached.store (position, std::memory_order_relaxed);
    inUse.store (cue->number, std::memory_order_release);
}

void SongPlayer::follow (const ShortMessage& message)
{
    keysMayBeDown = keysMayBeDown || (message[0] & kindBits) == noteOn;
    for (Lasting& setting : lasting)
    {
        if (setTheSame (setting.rest, message))
            setting.away = message[2] != setting.rest[2];
    }
}

// Keys and pedal at once. What bends and mutes the sound stays until that has died away, or a jump begins
// something new. The song's end has let go of the keys itself.
void SongPlayer::letGo (bool jumps, bool runs)
{
    releaseCount = 0;
    framesAtRest = runs ? 0 : framesAtRest + blockFrames;
    if (runs && !jumps)
        return;
    const bool hasEnded = cue != nullptr && ended.load (std::memory_order_relaxed) == cue->number;
    if (keysMayBeDown && (jumps || !hasEnded))
    {
        release (letGoOfKeys);
        keysMayBeDown = false;
    }
    const bool isQuiet =
        cue != nullptr && static_cast<double> (framesAtRest) > secondsUntilRest * cue->song->sampleRate;
    for (Lasting& setting : lasting)
    {
        if (setting.away && (&setting == lasting.data () || jumps || isQuiet))
        {
            release (setting.rest);
            setting.away = false;
        }
    }
}

void SongPlayer::beginBlock (std::uint32_t frames)
{
    blockFrames = frames;
    // In this order: who wants a song played has set its place before.
    const bool mayRun = wanted.load (std::memory_order_acquire);
    const Cue* next = newest.load (std::memory_order_acquire);
    const bool jumps = next != cue;
    if (jumps)
        take (*next);
    running = mayRun && cue != nullptr && ended.load (std::memory_order_relaxed) != cue->number;

    letGo (jumps, running);
    state = jumps ? std::span (cue->state) : std::span<const ShortMessage> ();
    std::ranges::for_each (state, [this] (const ShortMessage& message) { follow (message); });

    due = {};
    if (!running)
        return;
    const std::span rest = std::span (cue->song->sequence.messages).subspan (nextMessage);
    const auto end = std::ranges::find_if (
        rest, [blockEnd = position + frames] (std::uint64_t sample) { return sample >= blockEnd; },
        &host::TimedMessage::sample);
    due = rest.first (static_cast<std::size_t> (end - rest.begin ()));
    for (const host::TimedMessage& message : due)
        follow (message.bytes);
}

std::optional<engine::Transport> SongPlayer::transport () const
{
    if (!running)
        return std::nullopt;
    const host::MusicalTime music =
        cue->song->tempos.at (static_cast<double> (position) / cue->song->sampleRate);
    return engine::Transport{ static_cast<double> (position), music.tempo, music.quarters };
}

void SongPlayer::endBlock ()
{
    if (!running)
        return;
    nextMessage += due.size ();
    position = std::min (position + blockFrames, cue->song->frames);
    reached.store (position, std::memory_order_relaxed);
    if (position == cue->song->frames)
        ended.store (cue->number, std::memory_order_release);
}
}
