#include "examples/Piece.h"

#include <sstream>
#include <stdexcept>

namespace examples
{
namespace
{
constexpr double heldShare = 0.9;  // of the last step; the rest is the gap to the next note
constexpr double tieOverlap = 0.1; // quarter notes that a tied note reaches into the next
constexpr std::string_view marks = "!,_";
constexpr int normalVelocity = 92;
constexpr int hardVelocity = 118;
constexpr int softVelocity = 68;

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
}

void Piece::line (double start, double step, std::string_view words)
{
    std::istringstream stream{ std::string (words) };
    std::string word;
    std::size_t firstHeld = played.size (); // the notes that a following "-" lengthens
    for (double now = start; stream >> word; now += step)
    {
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
        int velocity = normalVelocity;
        double length = step * heldShare;
        for (; !word.empty () && marks.find (word.back ()) != marks.npos; word.pop_back ())
        {
            if (word.back () == '_')
                length = step + tieOverlap;
            else
                velocity = word.back () == '!' ? hardVelocity : softVelocity;
        }
        firstHeld = played.size ();
        for (std::string_view chord = word;;)
        {
            const auto plus = chord.find ('+');
            played.push_back ({ now, length, keyOf (chord.substr (0, plus)), velocity });
            if (plus == chord.npos)
                break;
            chord.remove_prefix (plus + 1);
        }
    }
}
}
