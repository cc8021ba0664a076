#pragma once

namespace engine
{
// What the instrument can do beyond how its songs have sounded so far. Each is off until it is switched on,
// for it changes what a song's own controllers do.
struct Additions
{
    bool pedalAndWheel = false; // see PedalAndWheel
    bool songLock = false;      // see LfoSync::lock

    bool operator== (const Additions&) const = default;
};
}
