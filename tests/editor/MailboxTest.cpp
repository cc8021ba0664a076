#include "editor/Mailbox.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace editor;

namespace
{
float noteValue (int note)
{
    return static_cast<float> (note) / 128.0f;
}

TEST (Mailbox, WhatNobodyCanTakeIsDropped)
{
    Mailbox box;
    const auto post = [&box]
    {
        box.post (paramVolume, 0.5f);
        box.post (commandKeyOn, noteValue (60));
        box.postPrograms ();
        box.postLearnMenus ();
    };
    const auto holdsNothing = [&box]
    {
        const auto news = box.take ();
        return !news.any () && news.notesDown () == Mailbox::NoteSet{};
    };
    post ();
    EXPECT_TRUE (holdsNothing ()) << "not open yet";
    box.open ();
    for (const std::int32_t index : { -1, Mailbox::indexCount, std::numeric_limits<std::int32_t>::min () })
        box.post (index, 1.0f);
    EXPECT_TRUE (holdsNothing ()) << "no such index";
    for (const float value : { -1.0f, 1.0f, 1e9f })
        box.post (commandKeyOn, value);
    EXPECT_EQ (box.take ().notesDown (), Mailbox::NoteSet{}) << "no such note";
    post ();
    box.shut ();
    post ();
    box.open ();
    EXPECT_TRUE (holdsNothing ()) << "left from before";
}

TEST (Mailbox, NewestValueStaysAndIsTakenOnce)
{
    Mailbox box;
    box.open ();
    box.post (paramVolume, 0.25f);
    box.post (paramFilterFreq, 0.75f);
    box.post (paramVolume, 0.5f);
    const auto news = box.take ();
    EXPECT_EQ (news.value (paramVolume), 0.5f);
    EXPECT_EQ (news.value (paramFilterFreq), 0.75f);
    EXPECT_TRUE (news.has (paramVolume) && !news.has (paramNoise) && !news.programs ());
    EXPECT_FALSE (box.take ().any ());
}

TEST (Mailbox, NotesAreHeldUntilTheyEnd)
{
    Mailbox box;
    box.open ();
    for (const int note : { 0, 60, 127 })
        box.post (commandKeyOn, noteValue (note));
    box.post (commandKeyOff, noteValue (60));
    const auto down = box.take ().notesDown ();
    for (const auto& [note, isDown] :
         { std::pair{ 0, true }, std::pair{ 60, false }, std::pair{ 127, true } })
        EXPECT_EQ (Mailbox::contains (down, note), isDown) << note;
    box.post (paramVolume, 1.0f); // other news do not end notes
    EXPECT_TRUE (Mailbox::contains (box.take ().notesDown (), 127));
    box.post (commandVoiceMode, 1.0f);
    const auto news = box.take ();
    EXPECT_TRUE (news.has (commandVoiceMode));
    EXPECT_EQ (news.notesDown (), Mailbox::NoteSet{});
}

// The last value posted is always seen in the end, however posts and takes fall.
TEST (Mailbox, NothingIsLostBetweenThreads)
{
    Mailbox box;
    box.open ();
    constexpr int posts = 20000;
    std::atomic<bool> done = false;
    std::thread audio (
        [&]
        {
            for (int i = 1; i <= posts; ++i)
                box.post (paramVolume, static_cast<float> (i));
            done = true;
        });
    float newest = 0.0f;
    for (bool last = false; !last;)
    {
        last = done;
        const auto news = box.take ();
        if (!news.has (paramVolume))
            continue;
        EXPECT_GE (news.value (paramVolume), newest);
        newest = news.value (paramVolume);
    }
    audio.join ();
    EXPECT_EQ (newest, static_cast<float> (posts));
}
}
