#include "tests/formats/Lv2Instance.h"

#include <cmath>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <string>

#include "platform/SharedLibrary.h"

namespace
{
// The framework writes one statement in a line, and the index of a port before its default.
std::vector<float> readDefaults ()
{
    std::ifstream file (BRIMVALE_LV2_BUNDLE "Brimvale.ttl");
    std::vector<float> defaults;
    std::string word;
    while (file >> word)
    {
        std::size_t index = 0;
        if (word == "lv2:index" && file >> index)
            defaults.resize (index + 1, std::numeric_limits<float>::quiet_NaN ());
        else if (word == "lv2:default" && !defaults.empty ())
            file >> defaults.back ();
    }
    return defaults;
}

struct Made
{
    ~Made ()
    {
        if (handle != nullptr)
            descriptor->cleanup (handle);
    }

    platform::SharedLibrary file{ BRIMVALE_FORMAT_LIBRARY };
    const LV2_Descriptor* descriptor = nullptr;
    LV2_Handle handle = nullptr;
};
}

Lv2Instance makeLv2Instance (const LV2_Feature* const* features)
{
    const auto made = std::make_shared<Made> ();
    using Entry = const LV2_Descriptor* (*)(std::uint32_t);
    made->descriptor = reinterpret_cast<Entry> (made->file.symbol ("lv2_descriptor")) (0);
    made->handle = made->descriptor->instantiate (made->descriptor, 44100.0, BRIMVALE_LV2_BUNDLE, features);
    if (made->handle == nullptr)
        throw std::runtime_error ("no instance");
    return { made->descriptor, made->handle, readDefaults (), made };
}
