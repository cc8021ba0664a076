#include "examples/Piece.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace examples
{
namespace
{
constexpr double heldShare = 0.9;  // of the last step; the rest is the gap to the next note
constexpr double tieOverlap = 0.1; // quarter notes that a tied note reaches into the next
constexpr std::string_view marks = "!,_";
constexpr int harder = 24; // added to a note's velocity
constexpr int softer = -24;
constexpr int onBeat = 4;
constexpr int betweenEighths = -5;

// "C#3" to 49: octave 4 begins at middle C, 60.
int keyOf (std::string_view text)
{
    constexpr std::string_view letters = "C D EF G A B";
    const auto semitone = text.empty () ? std::string_view::npos : letters.find (text.front ());
    if (semitone == std::string_view::npos || text.front () == ' ')
        throw std::invalid_argument ("no such note: " + std::string (text));
    int key = static_cast<int> (semitone);
    text.remove_prefix (1);
    if (text.starts_with ('#'))
        ++key;
    if (text.starts_with ('b'))
        --key;
    if (text.starts_with ('#') || text.starts_with ('b'))
        text.remove_prefix (1);
    if (text.size () != 1 || text.front () < '0' || text.front () > '8')
        throw std::invalid_argument ("a note needs an octave from 0 to 8");
    return key + 12 * (text.front () - '0' + 1);
}

// How the place in the bar weighs a note.
int metre (double quarters)
{
    const double beat = quarters - std::floor (quarters);
    if (beat == 0.0)
        return onBeat;
    return beat == 0.5 ? 0 : betweenEighths;
}
}

double Piece::swung (double quarters) const
{
    const double eighth = std::floor (quarters * 2.0) / 2.0;
    const double place = (quarters - eighth) * 4.0; // in sixteenths, 0..2
    const double late = place < 1.0 ? place * (1.0 + lateness) : 2.0 - (2.0 - place) * (1.0 - lateness);
    return eighth + late / 4.0;
}

void Piece::bend (double start, double length, double from, double to)
{
    constexpr double step = 1.0 / 24.0;
    const int steps = std::max (1, static_cast<int> (std::lround (length / step)));
    for (int n = 0; n <= steps; ++n)
        wheel.push_back ({ start + length * n / steps, from + (to - from) * n / steps, part });
}

void Piece::beat (double start, int key, std::string_view strokes)
{
    constexpr std::string_view marks = "-oxX";
    constexpr int velocities[] = { 46, 72, 96, 118 };
    constexpr double length = 0.2; // quarter notes
    int step = 0;
    for (const char stroke : strokes)
    {
        if (stroke == ' ')
            continue;
        const auto strength = marks.find (stroke);
        if (strength == marks.npos && stroke != '.')
            throw std::invalid_argument (std::string ("no such stroke: ") + stroke);
        const double now = start + step * 0.25;
        if (strength != marks.npos)
            note (now, length, key, velocities[strength] + metre (now) + step * 7 % 5 - 2);
        ++step;
    }
}

void Piece::line (double start, double step, std::string_view words, Velocities velocities)
{
    std::istringstream stream{ std::string (words) };
    const std::vector<std::string> all{ std::istream_iterator<std::string> (stream), {} };
    std::size_t firstHeld = played.size (); // the notes that a following "-" lengthens
    for (std::size_t place = 0; place < all.size (); ++place)
    {
        std::string word = all[place];
        const double now = start + static_cast<double> (place) * step;
        if (word == ".")
        {
            firstHeld = played.size ();
            continue;
        }
        if (word == "-")
        {
            for (std::size_t n = firstHeld; n < played.size (); ++n)
                played[n].length += step;
            continue;
        }
        int velocity =
            velocities.from + metre (now) +
            static_cast<int> (place) * (velocities.to - velocities.from) / static_cast<int> (all.size ());
        double length = step * heldShare;
        for (; !word.empty () && marks.find (word.back ()) != marks.npos; word.pop_back ())
        {
            if (word.back () == '_')
                length = step + tieOverlap;
            else
                velocity += word.back () == '!' ? harder : softer;
        }
        firstHeld = played.size ();
        for (std::string_view chord = word;;)
        {
            const auto plus = chord.find ('+');
            note (now, length, keyOf (chord.substr (0, plus)), std::clamp (velocity, 1, 127));
            if (plus == chord.npos)
                break;
            chord.remove_prefix (plus + 1);
        }
    }
}
}
