#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

// The filter of one voice: drive stage, state-variable section with three outputs, and an extra low-pass
// pole for the low-pass output. Ticked on the audio thread; its memories carry over from note to note. The
// setters may come from the user-interface thread.
class Filter
{
public:
    enum Type : std::int32_t
    {
        lowPass,
        bandPass,
        highPass
    };

    Filter () { setSampleRate (44100.0f); }

    // Above 0. Recomputes the fixed corner frequencies; the cutoff follows at the next setCutoff.
    void setSampleRate (float hz);

    // Control 0..1 (may leave it) to the cutoff frequency, 100..6500 Hz.
    void setCutoff (float control);

    // Moves the base of the cutoff control one step towards `target` (0..1) and answers it. Called once per
    // cutoff update. Large distances go fast at first and settle smoothly.
    float keyTrackedBase (float target);

    void setKey (int note);        // MIDI note; key tracking counts from note 48
    void setResonance (float r);   // limited to 0.3..0.968
    void setType (std::int32_t t); // Type; once a foreign number is stored the type no longer changes
    void setSmooth (bool on) { settings.smooths = on; }
    void setKeyTrack (bool on) { keyTrack = on; }
    void setHighQuality (bool on) { settings.drives = on; } // drive stage on or off

    float process (float input) { return step (memory, settings, settings.coefficient, input); }

    // A run of samples in place, with the main coefficient of each one in coefficients[0 .. samples-1].
    void processRun (float* samples, const float* coefficients, int count);

    float coefficient () const { return settings.coefficient; } // 2 pi x cutoff / sample rate
    float cutoffHz () const { return cutoff; }

private:
    struct Settings
    {
        float coefficient = 0.0f;       // main section: angular step x cutoff
        float damping = 1.0f;           // main section: 2 x (1 - resonance)
        float dcCoefficient = 0.0f;     // one-pole low-pass at 10 Hz
        float colourCoefficient = 0.0f; // colour section at 1 kHz
        std::int32_t type = highPass;
        bool smooths = false;
        bool drives = true;
    };

    struct Memory
    {
        float drive = 0.0f; // last drive-stage input
        float dc = 0.0f;    // DC blocker
        float colourBand = 0.0f;
        float colourLow = 0.0f;
        float band = 0.0f;
        float low = 0.0f;
        float selected = 0.0f; // last output of the main section
        float smoothCoefficient = 0.0f;
        float smooth = 0.0f;
    };

    static float flushed (float x);
    static float softClip (float x);
    static float drive (Memory& m, const Settings& s, float input);
    static float step (Memory& m, const Settings& s, float coefficient, float input);
    float highestStableCoefficient () const;

    Settings settings;
    Memory memory;
    float sampleRate = 44100.0f;
    float angularStep = 0.0f; // 2 pi / sample rate
    float base = 0.0f;        // slewed base of the cutoff control, 0..1
    float cutoff = 0.0f;      // Hz
    int key = 24;             // 0..127
    bool keyTrack = true;
};

// The one guard against denormals: what is stored as a memory has a normal exponent or is 0.
inline float Filter::flushed (float x)
{
    if (std::abs (x) < std::numeric_limits<float>::min ()) [[unlikely]]
        return 0.0f;
    return x;
}

// x (1 - |x| / 4a) with a = 2. Beyond 2a it stays at a above and at 1 - a below: the lower ceiling is meant
// to be the smaller one.
inline float Filter::softClip (float x)
{
    constexpr float a = 2.0f;
    const float magnitude = std::abs (x);
    if (magnitude > 2.0f * a) [[unlikely]]
        return x > 0.0f ? a : 1.0f - a;
    return x * (1.0f - magnitude / (4.0f * a));
}

// Feedback, soft clip, DC blocker, and a band around 1 kHz added for colour.
inline float Filter::drive (Memory& m, const Settings& s, float input)
{
    constexpr float feedback = 0.4f;
    constexpr float colourDamping = 1.0f;
    constexpr float colourAmount = 0.4f;

    float x = flushed (input + feedback * m.drive);
    m.drive = x;
    x = softClip (x);

    const float dc = m.dc;
    m.dc = flushed (dc + (x - dc) * s.dcCoefficient);
    x -= dc;

    const float high = x - (m.colourLow + m.colourBand * colourDamping);
    const float band = high * s.colourCoefficient + m.colourBand;
    const float low = band * s.colourCoefficient + m.colourLow;
    m.colourBand = flushed (band);
    m.colourLow = flushed (low);
    return x + band * colourDamping * colourAmount;
}

// One sample of the state-variable filter with one unit delay in each integrator, cutoff 2 pi fc / fs without
// a sine correction.
inline float Filter::step (Memory& m, const Settings& s, float coefficient, float input)
{
    constexpr float lowestSmooth = 0.02f;
    constexpr float smoothStep = 0.01f;

    const float x = s.drives ? drive (m, s, input) : input;
    const float high = x - (m.low + m.band * s.damping);
    const float band = high * coefficient + m.band;
    const float low = band * coefficient + m.low;
    m.band = flushed (band);
    m.low = flushed (low);

    if (s.type == lowPass)
        m.selected = low;
    else if (s.type == bandPass)
        m.selected = band;
    else if (s.type == highPass)
        m.selected = high;

    if (!s.smooths || s.type != lowPass)
        return m.selected;

    float c = m.smoothCoefficient;
    c = c < lowestSmooth ? lowestSmooth : (c > 1.0f ? 1.0f : c);
    if (c < coefficient)
        c += smoothStep;
    else if (c > coefficient)
        c -= smoothStep;
    m.smoothCoefficient = c;
    const float y = m.smooth + (m.selected - m.smooth) * c;
    m.smooth = flushed (y);
    return y;
}
