// brimvale-grab FILE.png WIDTH HEIGHT: the top left corner of the display, as somebody before it sees it.
#include <exception>
#include <iostream>
#include <string>

#include "picture/Png.h"
#include "tests/stage/grabScreen/ScreenGrab.h"

int main (int count, char** arguments)
{
    if (count != 4)
    {
        std::cerr << "usage: brimvale-grab FILE.png WIDTH HEIGHT\n";
        return 2;
    }
    try
    {
        const ScreenGrab screen;
        picture::writePng (screen.grab (std::stoi (arguments[2]), std::stoi (arguments[3])), arguments[1]);
        return 0;
    }
    catch (const std::exception& problem)
    {
        std::cerr << "brimvale-grab: " << problem.what () << '\n';
    }
    return 1;
}
