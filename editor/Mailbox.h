#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "parameters/Parameters.h"

namespace editor
{
using namespace parameters;

// News for the editor from whatever thread they happen on. Posting stores a few atomic words and neither
// allocates, waits nor fails; of several values for one index the newest stays. The interface thread takes
// everything at once. While the box is shut, posts are dropped.
class Mailbox
{
public:
    static constexpr std::int32_t indexCount = commandRandom + 1;
    static constexpr int noteCount = 128;
    using NoteSet = std::array<std::uint64_t, 2>; // one bit a note

    static constexpr bool contains (const NoteSet& notes, int note)
    {
        return ((notes[static_cast<std::size_t> (note) / 64] >> (note % 64)) & 1u) != 0;
    }

    // What was waiting.
    class News
    {
    public:
        bool any () const { return bits != 0; }
        bool has (std::int32_t index) const { return ((bits >> index) & 1u) != 0; }
        float value (std::int32_t index) const { return values[static_cast<std::size_t> (index)]; }
        bool learnMenus () const { return has (learnMenusBit); }
        bool programs () const { return has (programsBit); }
        const NoteSet& notesDown () const { return notes; } // of all notes, whether news or not

    private:
        friend class Mailbox;
        std::uint64_t bits = 0;
        std::array<float, indexCount> values = {};
        NoteSet notes = {};
    };

    // Any thread. Values for indices outside the table are dropped.
    void post (std::int32_t index, float value) noexcept
    {
        if (!opened.load (std::memory_order_acquire) || index < 0 || index >= indexCount)
            return;
        if (index == commandKeyOn || index == commandKeyOff)
            setNote (truncateToInt (value * noteCount), index == commandKeyOn);
        else if (index == commandVoiceMode)
            for (auto& word : notes)
                word.store (0, std::memory_order_relaxed);
        else
            values[static_cast<std::size_t> (index)].store (value, std::memory_order_relaxed);
        raise (index);
    }
    void postLearnMenus () noexcept { raise (learnMenusBit); }
    void postPrograms () noexcept { raise (programsBit); }

    // Interface thread.
    void open () noexcept
    {
        bits.store (0, std::memory_order_relaxed);
        for (auto& word : notes)
            word.store (0, std::memory_order_relaxed);
        opened.store (true, std::memory_order_release);
    }
    void shut () noexcept { opened.store (false, std::memory_order_release); }

    News take () noexcept
    {
        News news;
        news.bits = bits.exchange (0, std::memory_order_acquire);
        if (!news.any ())
            return news;
        for (std::int32_t index = 0; index < indexCount; ++index)
        {
            const auto i = static_cast<std::size_t> (index);
            if (news.has (index))
                news.values[i] = values[i].load (std::memory_order_relaxed);
        }
        for (std::size_t word = 0; word < notes.size (); ++word)
            news.notes[word] = notes[word].load (std::memory_order_relaxed);
        return news;
    }

private:
    // The two bits above the indices.
    static constexpr std::int32_t learnMenusBit = 62;
    static constexpr std::int32_t programsBit = 63;
    static_assert (indexCount <= learnMenusBit);
    static_assert (std::atomic<std::uint64_t>::is_always_lock_free &&
                   std::atomic<float>::is_always_lock_free);

    void raise (std::int32_t bit) noexcept
    {
        if (opened.load (std::memory_order_acquire))
            bits.fetch_or (std::uint64_t{ 1 } << bit, std::memory_order_release);
    }

    void setNote (std::int32_t note, bool isDown) noexcept
    {
        if (note < 0 || note >= noteCount)
            return;
        auto& word = notes[static_cast<std::size_t> (note) / 64];
        const std::uint64_t bit = std::uint64_t{ 1 } << (note % 64);
        if (isDown)
            word.fetch_or (bit, std::memory_order_relaxed);
        else
            word.fetch_and (~bit, std::memory_order_relaxed);
    }

    std::atomic<bool> opened = false;
    std::atomic<std::uint64_t> bits = 0;
    std::array<std::atomic<float>, indexCount> values = {};
    std::array<std::atomic<std::uint64_t>, 2> notes = {};
};
}
