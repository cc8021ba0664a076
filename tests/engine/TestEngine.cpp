#include "tests/engine/TestEngine.h"

#include <cstring>

#include "instrument/Bank.h"
#include "platform/Resources.h"
#include "resources/ResourceIds.h"

using namespace engine;
using namespace instrument;
using namespace parameters;

TestEngine::TestEngine () : TestEngine (44100.0f) {}

TestEngine::TestEngine (float sampleRate) : rate (sampleRate)
{
    for (const ParamRow& row : paramTable)
        values[static_cast<std::size_t> (row.index)] = row.initial;
    engine.initialise ();
    load (Program (values));
}

void TestEngine::set (int index, float value)
{
    engine.parameterChanging (index, value);
    if (isParameter (index))
    {
        const bool unclamped = paramTable[static_cast<std::size_t> (index)].unclamped;
        value = usableValue (index, storableValue (index, value, unclamped));
        values[static_cast<std::size_t> (index)] = value;
    }
    engine.parameterChanged (index, value);
}

void TestEngine::load (const Program& program)
{
    for (int index = 0; index < parameterCount; ++index)
        set (index, program[static_cast<std::size_t> (index)]);
}

std::vector<float> TestEngine::block (int frames, const std::vector<TimedMidi>& midi)
{
    std::vector<float> left (static_cast<std::size_t> (frames), 99.0f);
    std::vector<float> right (left);
    EventList list (midi);
    engine.processEvents (list.get ());
    float* outputs[] = { left.data (), right.data () };
    engine.renderBlock (outputs, frames);
    return left;
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

void TestEngine::controllerReceived (std::uint32_t controller, float value)
{
    controllers.emplace_back (controller, value);
}

TestEngine::Program plainProgram ()
{
    TestEngine::Program program;
    for (const ParamRow& row : paramTable)
        program[static_cast<std::size_t> (row.index)] = row.initial;
    program[paramOsc1Wave] = 0.5f;
    program[paramOsc2Wave] = 0.0f;
    program[paramVelocityAmp] = 0.0f;
    program[paramVelocityFilter] = 0.0f;
    program[paramHighQuality] = 1.0f;
    return program;
}

std::vector<TestEngine::Program> factoryPrograms ()
{
    const std::span<const std::byte> records = platform::findResource ("Bank", factoryBankId);
    std::vector<TestEngine::Program> programs;
    for (std::size_t at = 0; at + sizeof (ProgramRecord) <= records.size (); at += sizeof (ProgramRecord))
    {
        ProgramRecord record;
        std::memcpy (&record, records.data () + at, sizeof record);
        programs.push_back (record.values);
    }
    return programs;
}
