// Compiled once for each instruction set, as the function VOICE_KERNEL with at most VOICE_KERNEL_WIDTH lanes
// in a vector. Nothing here may leave code behind that another file could share: it would run on machines
// that do not have the instructions. So everything is local to this file or always inlined.
#include "engine/VoiceKernel.h"

#include <limits>

#include "engine/NoteTable.h"
#include "engine/PitchLaw.h"
#include "parameters/KnobLaws.h"

namespace engine
{
RenderLanes VOICE_KERNEL;

namespace
{
// `width` numbers side by side. Arithmetic, comparison and ?: work on each element alone, as they do on a
// number. The double-precision ones take two vectors where one of the machine's does not hold them all.
template <int width>
struct Vectors
{
    static constexpr int floatBytes = 4;
    static constexpr int doubleBytes = 8;
    static constexpr int parts = width * doubleBytes > VOICE_KERNEL_WIDTH* floatBytes ? 2 : 1;

    using Real [[gnu::vector_size (width * floatBytes), gnu::may_alias]] = float;
    using Bits [[gnu::vector_size (width * floatBytes), gnu::may_alias]] = std::int32_t;
    using Double [[gnu::vector_size (width * doubleBytes / parts), gnu::may_alias]] = double;
    using AllDoubles [[gnu::vector_size (width * doubleBytes), gnu::may_alias]] = double;
    using Pairs [[gnu::vector_size (width * floatBytes), gnu::may_alias]] = double;
};

// One voice alone: plain numbers.
template <>
struct Vectors<1>
{
    using Real = float;
    using Bits = std::int32_t;
    using Double = double;
    using AllDoubles = double;
    using Pairs = double;
    static constexpr int parts = 1;
};

template <int width>
class Kernel
{
    using Real = typename Vectors<width>::Real;
    using Bits = typename Vectors<width>::Bits;
    using Double = typename Vectors<width>::Double;
    using AllDoubles = typename Vectors<width>::AllDoubles;
    static constexpr int parts = Vectors<width>::parts;
    static constexpr unsigned allLanes = (1u << width) - 1u;

    struct Doubles
    {
        Double part[parts];
    };

    // One vector for each sample of a run.
    template <typename Value>
    struct Rows
    {
        Value at[longestRun];
    };

    // Half as many pairs of floats.
    using Pairs = typename Vectors<width>::Pairs;

    // --- Vectors

    template <typename Value, typename Number>
    [[gnu::always_inline]] static inline Value& vectorAt (Number* first)
    {
        return *reinterpret_cast<Value*> (first);
    }

    template <typename Value, typename Number>
    [[gnu::always_inline]] static inline const Value& vectorAt (const Number* first)
    {
        return *reinterpret_cast<const Value*> (first);
    }

    // The element of lane `first` and its neighbours.
    template <typename Number>
    [[gnu::always_inline]] static inline Real& lanes (Lanes<Number>& numbers, std::size_t first)
    {
        return vectorAt<Real> (&numbers.of[first]);
    }

    [[gnu::always_inline]] static inline Doubles& doubles (Lanes<double>& numbers, std::size_t first)
    {
        return vectorAt<Doubles> (&numbers.of[first]);
    }

    // Conversions work on whole vectors; the two vectors of doubles count as one long one.
    template <typename To, typename From>
    [[gnu::always_inline]] static inline To converted (From from)
    {
        if constexpr (width == 1)
            return static_cast<To> (from);
        else
            return __builtin_convertvector(from, To);
    }

    template <typename From>
    [[gnu::always_inline]] static inline Doubles widened (From x)
    {
        return __builtin_bit_cast(Doubles, converted<AllDoubles> (x));
    }

    template <typename To>
    [[gnu::always_inline]] static inline To narrowed (const Doubles& x)
    {
        return converted<To> (__builtin_bit_cast(AllDoubles, x));
    }

    [[gnu::always_inline]] static inline Doubles sum (Doubles a, const Doubles& b)
    {
        for (int k = 0; k < parts; ++k)
            a.part[k] += b.part[k];
        return a;
    }

    [[gnu::always_inline]] static inline Doubles difference (Doubles a, const Doubles& b)
    {
        for (int k = 0; k < parts; ++k)
            a.part[k] -= b.part[k];
        return a;
    }

    [[gnu::always_inline]] static inline Doubles product (Doubles a, const Doubles& b)
    {
        for (int k = 0; k < parts; ++k)
            a.part[k] *= b.part[k];
        return a;
    }

    // All ones in the lanes whose bit is set.
    [[gnu::always_inline]] static inline auto maskOf (unsigned lanesByBit)
    {
        if constexpr (width == 1)
        {
            return (lanesByBit & 1u) != 0;
        }
        else
        {
            Bits bit;
            for (int lane = 0; lane < width; ++lane)
                bit[lane] = 1 << lane;
            return (bit & static_cast<std::int32_t> (lanesByBit)) != 0;
        }
    }

    [[gnu::always_inline]] static inline Real magnitudeOf (Real x)
    {
        if constexpr (width == 1)
            return __builtin_fabsf (x);
        else
            return reinterpret_cast<Real> (reinterpret_cast<Bits> (x) & 0x7FFFFFFF);
    }

    // Two neighbouring samples of a table for each lane. One 64-bit load fetches both: that is faster here
    // than the gather instructions.
    [[gnu::always_inline]] static inline void readPairs (const float* table, const std::int32_t* index,
                                                         Real& first, Real& second)
    {
        if constexpr (width == 1)
        {
            first = table[*index];
            second = table[*index + 1];
        }
        else
        {
            struct [[gnu::packed, gnu::may_alias]] Pair
            {
                double both;
            };
            const auto pair = [table, index](int lane) __attribute__ ((always_inline))
            {
                return reinterpret_cast<const Pair*> (table + index[lane])->both;
            };

            // In the order that a shuffle within 128 bits brings back.
            if constexpr (width == 4)
            {
                const Real a = reinterpret_cast<Real> (Pairs{ pair (0), pair (1) });
                const Real b = reinterpret_cast<Real> (Pairs{ pair (2), pair (3) });
                first = __builtin_shufflevector (a, b, 0, 2, 4, 6);
                second = __builtin_shufflevector (a, b, 1, 3, 5, 7);
            }
            if constexpr (width == 8)
            {
                const Real a = reinterpret_cast<Real> (Pairs{ pair (0), pair (1), pair (4), pair (5) });
                const Real b = reinterpret_cast<Real> (Pairs{ pair (2), pair (3), pair (6), pair (7) });
                first = __builtin_shufflevector (a, b, 0, 2, 8, 10, 4, 6, 12, 14);
                second = __builtin_shufflevector (a, b, 1, 3, 9, 11, 5, 7, 13, 15);
            }
            if constexpr (width == 16)
            {
                const Real a = reinterpret_cast<Real> (Pairs{ pair (0), pair (1), pair (4), pair (5),
                                                              pair (8), pair (9), pair (12), pair (13) });
                const Real b = reinterpret_cast<Real> (Pairs{ pair (2), pair (3), pair (6), pair (7),
                                                              pair (10), pair (11), pair (14), pair (15) });
                first =
                    __builtin_shufflevector (a, b, 0, 2, 16, 18, 4, 6, 20, 22, 8, 10, 24, 26, 12, 14, 28, 30);
                second =
                    __builtin_shufflevector (a, b, 1, 3, 17, 19, 5, 7, 21, 23, 9, 11, 25, 27, 13, 15, 29, 31);
            }
        }
    }

    // --- Sources

    // Where an oscillator reads at each sample.
    struct Reads
    {
        Rows<Bits> index;
        Rows<Real> fraction;         // of the full read
        Rows<Doubles> exactFraction; // of the plain read
    };

    [[gnu::always_inline]] static inline void wrapOnce (Double& phase, double length)
    {
        if constexpr (width > 1)
            phase = phase >= length ? phase - length : phase;
        else if (__builtin_expect (phase >= length,
                                   false)) // a branch that is guessed right need not be waited for
            phase -= length;
    }

    // A stretch of samples in which the pitch stays, or glides but does nothing else. `wraps` is how many
    // ends of the cycle one step may pass: more than one only at sample rates far below the usual.
    template <bool wrapsOften, bool glides>
    [[gnu::noinline]] static void readStretch (OscillatorLanes& source, std::size_t first, int n, int end,
                                               int wraps, Reads& reads)
    {
        const double length = source.length;
        const float offset = source.pulseOffset;
        const bool isFull = source.isFull;
        Pitch pitch (source, first);
        Doubles step = widened (pitch.increment);
        Doubles phase = doubles (source.phase, first);
        for (; n < end; ++n)
        {
            if constexpr (glides)
            {
                pitch.update ();
                step = widened (pitch.increment);
                phase = startedAnew (phase, step, length);
            }
            for (Double& p : phase.part)
            {
                for (int wrap = 0; wrap < (wrapsOften ? wraps : 1); ++wrap)
                    wrapOnce (p, length);
            }
            const Bits index = narrowed<Bits> (phase);
            reads.index.at[n] = index;
            if (isFull)
                reads.fraction.at[n] = readPosition (phase, offset, length) - converted<Real> (index);
            else
                reads.exactFraction.at[n] = difference (phase, widened (index));
            phase = sum (phase, step);
        }
        doubles (source.phase, first) = phase;
        if constexpr (glides)
        {
            lanes (source.glideCurrent, first) = pitch.current;
            lanes (source.increment, first) = pitch.increment;
        }
    }

    // Oscillator::readPosition.
    [[gnu::always_inline]] static inline Real readPosition (const Doubles& phase, float offset, double length)
    {
        if (offset == 0.0f)
            return narrowed<Real> (phase);
        const float end = static_cast<float> (length) + offset;
        Doubles shifted = phase;
        for (Double& p : shifted.part)
            p += static_cast<double> (offset);
        const Real position = narrowed<Real> (shifted);
        return position >= end ? position - end : position;
    }

    // What the pitch of an oscillator is made of.
    struct Pitch
    {
        [[gnu::always_inline]] inline Pitch (OscillatorLanes& source, std::size_t first)
            : glides (source.glides),
              tuneCorrection (source.tuneCorrection),
              masterPitchFactor (source.masterPitchFactor),
              incrementPerHz (source.incrementPerHz),
              lfoPitchFactor (lanes (source.lfoPitchFactor, first)),
              bendHz (lanes (source.bendHz, first)),
              fineHz (lanes (source.fineHz, first)),
              target (lanes (source.glideTarget, first)),
              delta (lanes (source.glideDelta, first)),
              noteHz (lanes (source.noteHz, first)),
              current (lanes (source.glideCurrent, first)),
              increment (lanes (source.increment, first))
        {
        }

        // Oscillator::updateIncrement.
        [[gnu::always_inline]] inline void update ()
        {
            if (glides)
                current = pitchLaw::glided<Real> (current, target, delta);
            increment =
                pitchLaw::incrementOf<Real> (glides ? current : noteHz, tuneCorrection, lfoPitchFactor,
                                             masterPitchFactor, bendHz, fineHz, incrementPerHz);
        }

        const bool glides;
        const float tuneCorrection;
        const float masterPitchFactor;
        const float incrementPerHz;
        const Real lfoPitchFactor;
        const Real bendHz;
        const Real fineHz;
        const Real target;
        const Real delta;
        const Real noteHz;
        Real current;
        Real increment;
    };

    // A rewound cycle starts one increment in; where `step` is 0 nothing happens.
    [[gnu::always_inline]] static inline Doubles startedAnew (Doubles phase, const Doubles& step,
                                                              double length)
    {
        for (int k = 0; k < parts; ++k)
        {
            Double& p = phase.part[k];
            p = (step.part[k] > 0.0) & (p == 0.0) ? step.part[k] + length : p;
        }
        return phase;
    }

    // For the lanes whose bit is set.
    [[gnu::noinline]] static void updateIncrement (OscillatorLanes& source, std::size_t first,
                                                   unsigned lanesByBit)
    {
        const auto due = maskOf (lanesByBit);
        Pitch pitch (source, first);
        pitch.update ();
        Real& current = lanes (source.glideCurrent, first);
        Real& increment = lanes (source.increment, first);
        current = due ? pitch.current : current;
        increment = due ? pitch.increment : increment;
        Doubles& phase = doubles (source.phase, first);
        phase = startedAnew (phase, widened (due ? increment : Real{}), source.length);
    }

    static bool isGliding (const OscillatorLanes& source, std::size_t first)
    {
        for (std::size_t lane = first; lane < first + width; ++lane)
        {
            if (source.glideCurrent.of[lane] != source.glideTarget.of[lane])
                return true;
        }
        return false;
    }

    static void standStill (Reads& reads, int n, int end)
    {
        for (; n < end; ++n)
        {
            reads.index.at[n] = Bits{};
            reads.fraction.at[n] = Real{};
            reads.exactFraction.at[n] = Doubles{};
        }
    }

    [[gnu::noinline]] static void readPositions (const VoiceLanes& voices, OscillatorLanes& source,
                                                 bool followsLfo, std::size_t first, int samples,
                                                 Reads& reads)
    {
        const bool isSilent = source.table == nullptr;
        // Once every lane has arrived, a glide changes nothing more.
        const bool glidesEachSample =
            source.isFull && source.glides && !isSilent && isGliding (source, first);
        if (source.isFull && source.glides && !isSilent && !glidesEachSample)
            updateIncrement (source, first, allLanes);
        const float longestStep = pitchLaw::highestHz * source.incrementPerHz / pitchLaw::incrementDivisor;
        const int wraps =
            isSilent ? 0 : 1 + static_cast<int> (longestStep / static_cast<float> (source.length));
        for (int n = 0; n < samples;)
        {
            int end = samples;
            if (followsLfo && nextDue (voices.pitchDue, n, end) < end)
                end = nextDue (voices.pitchDue, n, end) + 1;
            if (isSilent)
                standStill (reads, n, end);
            else if (wraps > 1 && glidesEachSample)
                readStretch<true, true> (source, first, n, end, wraps, reads);
            else if (wraps > 1)
                readStretch<true, false> (source, first, n, end, wraps, reads);
            else if (glidesEachSample)
                readStretch<false, true> (source, first, n, end, wraps, reads);
            else
                readStretch<false, false> (source, first, n, end, wraps, reads);
            n = end;

            const unsigned due = voices.pitchDue.lanes[n - 1] >> first & allLanes;
            if (followsLfo && due != 0)
            {
                const float factor =
                    1.0f + voices.lfo[n - 1] * voices.lfoPitchDepth / parameters::pitchUnitHz;
                Real& lfoFactor = lanes (source.lfoPitchFactor, first);
                lfoFactor = maskOf (due) ? Real{} + factor : lfoFactor;
                updateIncrement (source, first, due);
            }
        }
    }

    // The next sample from n on at which some lane is due, `end` if there is none before.
    [[gnu::always_inline]] static inline int nextDue (const DueLanes& due, int n, int end)
    {
        const std::uint64_t ahead = due.samples >> n;
        const int next = ahead != 0 ? n + __builtin_ctzll (ahead) : end;
        return next < end ? next : end;
    }

    // --- Reading the tables

    [[gnu::always_inline]] static inline Real readPlain (const float* table, const Reads& reads, int n)
    {
        Real value;
        Real next;
        readPairs (table, indexAt (reads, n), value, next);
        return narrowed<Real> (
            sum (widened (value), product (reads.exactFraction.at[n], widened (next - value))));
    }

    [[gnu::always_inline]] static inline Real readFull (const float* table, const Reads& reads, int n)
    {
        Real value;
        Real next;
        readPairs (table, indexAt (reads, n), value, next);
        return value + reads.fraction.at[n] * (next - value);
    }

    // Without interpolation.
    [[gnu::always_inline]] static inline Real readNearest (const float* table, const Reads& reads, int n)
    {
        Real value;
        Real next;
        readPairs (table, indexAt (reads, n), value, next);
        return value;
    }

    [[gnu::always_inline]] static inline const std::int32_t* indexAt (const Reads& reads, int n)
    {
        return reinterpret_cast<const std::int32_t*> (&reads.index.at[n]);
    }

    [[gnu::noinline]] static void mixSources (VoiceLanes& voices, std::size_t first, int samples,
                                              Rows<Real>& mix)
    {
        const bool followsLfo = voices.lfoPitchDepth > 0.0f;
        Reads reads1;
        Reads reads2;
        readPositions (voices, voices.osc1, followsLfo, first, samples, reads1);
        readPositions (voices, voices.osc2, followsLfo, first, samples, reads2);

        const float* const table1 = tableOf (voices.osc1);
        const float* const table2 = tableOf (voices.osc2);
        const float level1 = voices.osc1.level;
        const float level2 = voices.osc2.level;
        if (!voices.osc1.interpolates)
            for (int n = 0; n < samples; ++n)
                mix.at[n] =
                    readNearest (table1, reads1, n) * level1 + readNearest (table2, reads2, n) * level2;
        else if (voices.osc2.isFull)
            for (int n = 0; n < samples; ++n)
                mix.at[n] = readFull (table1, reads1, n) * level1 + readFull (table2, reads2, n) * level2;
        else
            for (int n = 0; n < samples; ++n)
                mix.at[n] = readFull (table1, reads1, n) * level1 + readPlain (table2, reads2, n) * level2;

        if (!voices.noiseSounds)
            return;
        readPositions (voices, voices.noise, false, first, samples, reads1);
        const float* const tableNoise = tableOf (voices.noise);
        const float levelNoise = voices.noise.level;
        if (!voices.noise.interpolates)
            for (int n = 0; n < samples; ++n)
                mix.at[n] += readNearest (tableNoise, reads1, n) * levelNoise;
        else
            for (int n = 0; n < samples; ++n)
                mix.at[n] += readPlain (tableNoise, reads1, n) * levelNoise;
    }

    static const float* tableOf (const OscillatorLanes& source)
    {
        static constexpr float silence[2] = {};
        return source.table != nullptr ? source.table : silence;
    }

    // Both envelopes in one loop: each addition waits for the one before, and so they wait together.
    [[gnu::noinline]] static void renderEnvelopes (VoiceLanes& voices, std::size_t first, int samples,
                                                   Rows<Real>& amplitudes, Rows<Real>& env2)
    {
        Real amplitude = lanes (voices.amplitude.level, first);
        Real level2 = lanes (voices.env2.level, first);
        const Real amplitudeStep = lanes (voices.amplitude.step, first);
        const Real step2 = lanes (voices.env2.step, first);
        for (int n = 0; n < samples; ++n)
        {
            amplitudes.at[n] = amplitude += amplitudeStep;
            env2.at[n] = level2 += step2;
        }
        lanes (voices.amplitude.level, first) = amplitude;
        lanes (voices.env2.level, first) = level2;
        insertColumns (voices.amplitude, first, samples, amplitudes);
        insertColumns (voices.env2, first, samples, env2);
    }

    static void insertColumns (const EnvelopeLanes& envelope, std::size_t first, int samples,
                               Rows<Real>& levels)
    {
        for (std::size_t lane = 0; lane < width; ++lane)
        {
            if ((envelope.columns >> (first + lane) & 1u) == 0)
                continue;
            float* const levelsOfLane = reinterpret_cast<float*> (levels.at) + lane;
            for (int n = 0; n < samples; ++n)
                levelsOfLane[static_cast<std::size_t> (n) * width] = envelope.column[first + lane][n];
        }
    }

    // Filter::keyTrackedBase.
    static Real slewed (Real base, float target, float divisor)
    {
        const Real distance = magnitudeOf (target - base);
        const Real slew = distance / (divisor * (1.0f / distance));
        const Real raised = base < 0.0f ? Real{} : base;
        const Real limited = raised > 1.0f ? Real{} + 1.0f : raised;
        const Real moved = target > limited ? limited + slew : limited - slew;
        return target != base ? moved : base;
    }

    // parameters::cutoffHz and trackedCutoffHz.
    static Real cutoffOf (const VoiceLanes& voices, Real control, Real keyFactor)
    {
        Doubles hz = widened (control);
        const Doubles key = widened (keyFactor);
        for (int k = 0; k < parts; ++k)
        {
            Double& x = hz.part[k];
            x = x * x;
            if (voices.keyTracks)
                x = (x + parameters::trackedFoot) * parameters::trackedScale * key.part[k] *
                    parameters::cutoffSpanHz;
            else
                x = x * parameters::cutoffSpanHz + static_cast<double> (parameters::lowestCutoffHz);
        }
        const Real raised = narrowed<Real> (hz) < parameters::lowestCutoffHz
                                ? Real{} + parameters::lowestCutoffHz
                                : narrowed<Real> (hz);
        return raised > parameters::highestCutoffHz ? Real{} + parameters::highestCutoffHz : raised;
    }

    // The filter coefficient of every sample. The cutoff itself moves once per interval.
    [[gnu::noinline]] static void renderCutoff (VoiceLanes& voices, std::size_t first, int samples,
                                                const Rows<Real>& env2, Rows<Real>& coefficients)
    {
        Real& base = lanes (voices.cutoffBase, first);
        Real& hz = lanes (voices.cutoffHz, first);
        Real coefficient = lanes (voices.coefficient, first);
        for (int n = 0; n < samples;)
        {
            const int next = nextDue (voices.cutoffDue, n, samples);
            for (; n < next; ++n)
                coefficients.at[n] = coefficient;
            if (n == samples)
                break;
            const auto due = maskOf (voices.cutoffDue.lanes[n] >> first);
            base = due ? slewed (base, voices.cutoffTarget, voices.slewDivisor) : base;
            const Real control =
                env2.at[n] * voices.env2ToCutoff + base + (voices.lfo[n] + 1.0f) / 2.0f * voices.lfoToCutoff;
            hz = due ? cutoffOf (voices, control, lanes (voices.keyFactor, first)) : hz;
            const Real highest = lanes (voices.highestCoefficient, first);
            const Real wanted = hz * voices.angularStep;
            coefficient = due ? (highest < wanted ? highest : wanted) : coefficient;
            coefficients.at[n++] = coefficient;
        }
        lanes (voices.coefficient, first) = coefficient;
    }

    // --- Filters

    using Memory = filterCore::Memory<Real>;

    // Stores 0 for a denormal.
    struct Flushing
    {
        static Real magnitude (Real x) { return magnitudeOf (x); }
        Real operator() (Real x) const
        {
            return magnitudeOf (x) < std::numeric_limits<float>::min () ? Real{} : x;
        }
    };

    // Stores everything as it is and remembers the smallest.
    struct Watching
    {
        Real smallest = Real{} + 1.0f;

        static Real magnitude (Real x) { return magnitudeOf (x); }
        [[gnu::always_inline]] inline Real operator() (Real x)
        {
            const Real size = magnitudeOf (x);
            smallest = size < smallest ? size : smallest;
            return x;
        }
    };

    template <typename Keep>
    [[gnu::noinline]] static void filterRun (const VoiceLanes& voices, std::size_t first, int samples,
                                             const Rows<Real>& mix, const Rows<Real>& coefficients,
                                             const Rows<Real>& levels, Rows<Real>& sound, Memory& memory,
                                             Keep& keep)
    {
        Memory m = memory;
        const filterCore::Switches switches = voices.filterSwitches;
        const filterCore::FixedCoefficients fixed = voices.filterFixed;
        const bool smooths = switches.smooths && switches.type == filterCore::lowPass;
        const Real damping = vectorAt<Real> (&voices.damping.of[first]);
        const auto front = [&](int n) __attribute__ ((always_inline))
        {
            return switches.drives ? filterCore::coloured<Real> (
                                         m, fixed, filterCore::driven<Real> (m, mix.at[n], keep), keep)
                                   : mix.at[n];
        };
        const auto back = [&](int n, Real x) __attribute__ ((always_inline))
        {
            const Real y = filterCore::section<Real> (m, switches.type, damping, coefficients.at[n], x, keep);
            sound.at[n] =
                (smooths ? filterCore::smoothed<Real> (m, coefficients.at[n], y, keep) : y) * levels.at[n];
        };

        // The main section works one sample behind the stages before it, so that the processor need not wait
        // for them.
        Real x = front (0);
        for (int n = 0; n + 1 < samples; ++n)
        {
            back (n, x);
            x = front (n + 1);
        }
        back (samples - 1, x);
        memory = m;
    }

    // `move (ours, theirs)` for each memory of the filter.
    template <typename Move>
    [[gnu::always_inline]] static inline void
    forEachMemory (Memory& ours, filterCore::Memory<Lanes<float>>& theirs, std::size_t first, Move move)
    {
        move (ours.drive, lanes (theirs.drive, first));
        move (ours.dc, lanes (theirs.dc, first));
        move (ours.colourBand, lanes (theirs.colourBand, first));
        move (ours.colourLow, lanes (theirs.colourLow, first));
        move (ours.band, lanes (theirs.band, first));
        move (ours.low, lanes (theirs.low, first));
        move (ours.selected, lanes (theirs.selected, first));
        move (ours.smoothCoefficient, lanes (theirs.smoothCoefficient, first));
        move (ours.smooth, lanes (theirs.smooth, first));
    }

    // Denormals are rare, and looking after them in every step would lengthen the chain of operations that a
    // sample waits for. So the run is rendered without, and once more if one turned up.
    [[gnu::noinline]] static void renderFilters (VoiceLanes& voices, std::size_t first, int samples,
                                                 const Rows<Real>& mix, const Rows<Real>& coefficients,
                                                 const Rows<Real>& levels, Rows<Real>& sound)
    {
        Memory start;
        forEachMemory (start, voices.filter, first, [] (Real& ours, const Real& theirs) { ours = theirs; });

        Memory memory = start;
        Watching watching;
        filterRun (voices, first, samples, mix, coefficients, levels, sound, memory, watching);
        if (hasDenormal (watching.smallest, voices.used - first))
        {
            memory = start;
            Flushing flushing;
            filterRun (voices, first, samples, mix, coefficients, levels, sound, memory, flushing);
        }
        forEachMemory (memory, voices.filter, first, [] (const Real& ours, Real& theirs) { theirs = ours; });
    }

    static bool hasDenormal (const Real& smallest, std::size_t used)
    {
        const float* const of = reinterpret_cast<const float*> (&smallest);
        for (std::size_t lane = 0; lane < width && lane < used; ++lane)
        {
            if (of[lane] < std::numeric_limits<float>::min ())
                return true;
        }
        return false;
    }

    // Voice after voice, in ascending order: a sum of floats depends on it.
    [[gnu::noinline]] static void addVoices (const Rows<Real>& sound, std::size_t voices, float* out,
                                             int samples)
    {
        for (int n = 0; n < samples; ++n)
        {
            const float* const row = reinterpret_cast<const float*> (&sound.at[n]);
            float sum = out[n];
            if (voices >= width)
            {
#pragma GCC unroll 16
                for (std::size_t lane = 0; lane < width; ++lane)
                    sum += row[lane];
            }
            else
            {
                for (std::size_t lane = 0; lane < voices; ++lane)
                    sum += row[lane];
            }
            out[n] = sum;
        }
    }

public:
    static void render (VoiceLanes& voices, std::size_t first, float* out, int samples)
    {
        if (samples <= 0)
            return;
        Rows<Real> levels;
        Rows<Real> env2;
        Rows<Real> coefficients;
        Rows<Real> mix;
        Rows<Real> sound;
        renderEnvelopes (voices, first, samples, levels, env2);
        renderCutoff (voices, first, samples, env2, coefficients);
        mixSources (voices, first, samples, mix);
        renderFilters (voices, first, samples, mix, coefficients, levels, sound);
        addVoices (sound, voices.used - first, out, samples);
    }
};
}

void VOICE_KERNEL (VoiceLanes& voices, float* out, int samples)
{
    constexpr int widest = VOICE_KERNEL_WIDTH;
    for (std::size_t first = 0; first < voices.used;)
    {
        [[maybe_unused]] const std::size_t left = voices.used - first;
        const auto render = [&]<int width> (Kernel<width>)
        {
            Kernel<width>::render (voices, first, out, samples);
            first += width;
        };
        if constexpr (widest > 8) // used for more voices than that
            render (Kernel<widest>{});
        else if (left == 1)
            render (Kernel<1>{});
        else if (left <= 4)
            render (Kernel<4>{});
        else
            render (Kernel<widest>{});
    }
}
}
