#include "tools/audition/SoundReport.h"
#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
int main (int argc, char** argv)
{
    std::ifstream source (argv[1]);
    const auto programs = makeBank::readBankSource (source);
    const auto figures = audition::measureBank (programs);
    std::cout << audition::soundTable (programs, figures);
    std::cout << "median " << audition::medianLoudness (figures) << "\n";
    for (const auto& c : audition::complaints (programs, figures))
        std::cout << c << "\n";
    (void)argc;
}
