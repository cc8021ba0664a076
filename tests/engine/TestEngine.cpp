#include "tests/engine/TestEngine.h"

#include <cstring>
#include <stdexcept>

#include "tests/host/TemporaryFolder.h"

using namespace engine;
using namespace parameters;

namespace
{
std::vector<std::byte> bytesOf (const std::string& file)
{
    const std::string content = contentOf (SOURCE_FOLDER "/resources/" + file);
    if (content.empty ())
        throw std::runtime_error ("no resource " + file);
    const auto bytes = std::as_bytes (std::span (content));
    return { bytes.begin (), bytes.end () };
}

std::uint64_t unclampedInTable ()
{
    std::uint64_t flags = 0;
    for (const ParamRow& row : paramTable)
        flags |= std::uint64_t{ row.unclamped } << row.index;
    return flags;
}
}

const WaveTables& recordedWaves ()
{
    static const WaveTables tables = { makeWaveTable (bytesOf ("waves/pulse.pcm")),
                                       makeWaveTable (bytesOf ("waves/saw.pcm")),
                                       makeWaveTable (bytesOf ("waves/noise.pcm")) };
    return tables;
}

TestEngine::TestEngine (float rateHz, WaveTables waves, const VoiceKernel& kernel)
    : rate (rateHz),
      engine (std::move (waves), *this, kernel)
{
    load (initialProgram ());
}

void TestEngine::set (int index, float value)
{
    engine.parameterChange (index, value, paramTable[static_cast<std::size_t> (index)].unclamped);
}

void TestEngine::load (const Program& program)
{
    engine.selectProgram (program, unclampedInTable ());
}

std::vector<float> TestEngine::block (int frames, const std::vector<Event>& events)
{
    std::vector<float> left (static_cast<std::size_t> (frames), 99.0f);
    std::vector<float> right (left);
    const EventSpan list (events);
    engine.processEvents (&list);
    engine.renderBlock (left.data (), right.data (), frames);
    return left;
}

std::optional<Transport> TestEngine::transport ()
{
    return hasTime ? std::optional (time) : std::nullopt;
}

void TestEngine::programChange (int program)
{
    if (program >= static_cast<int> (programs.size ()))
        return;
    // The plug-in-wide parameters stay.
    Program next = programs[static_cast<std::size_t> (program)];
    for (const ParamRow& row : paramTable)
    {
        if (row.scope == Scope::plugin)
            next[static_cast<std::size_t> (row.index)] = value (row.index);
    }
    load (next);
}

bool TestEngine::controllerReceived (std::uint32_t controller, float value)
{
    controllers.emplace_back (controller, value);
    return controller == boundController;
}

TestEngine::Program initialProgram ()
{
    TestEngine::Program program;
    for (const ParamRow& row : paramTable)
        program[static_cast<std::size_t> (row.index)] = row.initial;
    return program;
}

TestEngine::Program plainProgram ()
{
    TestEngine::Program program = initialProgram ();
    program[paramOsc1Wave] = 0.5f;
    program[paramOsc2Wave] = 0.0f;
    program[paramVelocityAmp] = 0.0f;
    program[paramVelocityFilter] = 0.0f;
    program[paramHighQuality] = 1.0f;
    return program;
}

std::vector<TestEngine::Program> factoryPrograms ()
{
    constexpr std::size_t nameBytes = 24;
    constexpr std::size_t recordBytes = nameBytes + sizeof (TestEngine::Program);
    const std::vector<std::byte> records = bytesOf ("bank/factorybank.bin");
    std::vector<TestEngine::Program> programs (records.size () / recordBytes);
    for (std::size_t n = 0; n < programs.size (); ++n)
        std::memcpy (programs[n].data (), records.data () + n * recordBytes + nameBytes, sizeof programs[n]);
    return programs;
}
