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
struct VectorTypes
{
    static constexpr int floatBytes = 4;
    static constexpr int doubleBytes = 8;
    static constexpr int parts = width * doubleBytes > VOICE_KERNEL_WIDTH* floatBytes ? 2 : 1;

    using Real [[gnu::vector_size (width * floatBytes), gnu::may_alias]] = float;
    using Bits [[gnu::vector_size (width * floatBytes), gnu::may_alias]] = std::int32_t;
    using Double [[gnu::vector_size (width * doubleBytes / parts), gnu::may_alias]] = double;
    using AllDoubles [[gnu::vector_size (width * doubleBytes), gnu::may_alias]] = double;
    using PartOfReal [[gnu::vector_size (width * floatBytes / parts), gnu::may_alias]] = float;
    using PartOfBits [[gnu::vector_size (width * floatBytes / parts), gnu::may_alias]] = std::int32_t;
    using Pairs [[gnu::vector_size (width * floatBytes), gnu::may_alias]] = double; // of floats
};

// One number alone.
template <>
struct VectorTypes<1>
{
    using Real = float;
    using Bits = std::int32_t;
    using Double = double;
    using AllDoubles = double;
    using PartOfReal = float;
    using PartOfBits = std::int32_t;
    static constexpr int parts = 1;
};

template <int width>
struct Vectors : VectorTypes<width>
{
    using Types = VectorTypes<width>;
    using typename Types::AllDoubles;
    using typename Types::Bits;
    using typename Types::Double;
    using typename Types::Real;
    using Types::parts;

    struct Doubles
    {
        Double part[parts];
    };

    template <typename Value, typename Number>
    [[gnu::always_inline]] static inline Value& at (Number* first)
    {
        return *reinterpret_cast<Value*> (first);
    }

    template <typename Value, typename Number>
    [[gnu::always_inline]] static inline const Value& at (const Number* first)
    {
        return *reinterpret_cast<const Value*> (first);
    }

    // The element of lane `first` and its neighbours.
    template <typename Number>
    [[gnu::always_inline]] static inline Real& lanes (Lanes<Number>& numbers, std::size_t first)
    {
        return at<Real> (&numbers.of[first]);
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
        const auto all = converted<AllDoubles> (x);
        if constexpr (parts == 1)
            return { all };
        else if constexpr (width == 4)
            return { __builtin_shufflevector (all, all, 0, 1), __builtin_shufflevector (all, all, 2, 3) };
        else if constexpr (width == 8)
            return { __builtin_shufflevector (all, all, 0, 1, 2, 3),
                     __builtin_shufflevector (all, all, 4, 5, 6, 7) };
        else
            return { __builtin_shufflevector (all, all, 0, 1, 2, 3, 4, 5, 6, 7),
                     __builtin_shufflevector (all, all, 8, 9, 10, 11, 12, 13, 14, 15) };
    }

    [[gnu::always_inline]] static inline Real narrowed (const Doubles& x)
    {
        return narrowedTo<Real, typename Types::PartOfReal, (width > 4)> (x);
    }

    // Without what is behind the point. `isFirstOfTwo`: `x` is narrowed once more afterwards.
    template <bool isFirstOfTwo>
    [[gnu::always_inline]] static inline Bits truncated (const Doubles& x)
    {
        return narrowedTo<Bits, typename Types::PartOfBits, (width > 4 || isFirstOfTwo)> (x);
    }

    // The parts one by one, or as one long vector: that is faster with four lanes, but the compiler puts the
    // long one into memory where it needs it twice.
    template <typename Whole, typename Part, bool oneByOne>
    [[gnu::always_inline]] static inline Whole narrowedTo (const Doubles& x)
    {
        if constexpr (parts == 1)
            return converted<Whole> (x.part[0]);
        else if constexpr (!oneByOne)
            return converted<Whole> (__builtin_shufflevector (x.part[0], x.part[1], 0, 1, 2, 3));
        else if constexpr (width == 4)
            return __builtin_shufflevector (converted<Part> (x.part[0]), converted<Part> (x.part[1]), 0, 1, 2,
                                            3);
        else if constexpr (width == 8)
            return __builtin_shufflevector (converted<Part> (x.part[0]), converted<Part> (x.part[1]), 0, 1, 2,
                                            3, 4, 5, 6, 7);
        else
            return __builtin_shufflevector (converted<Part> (x.part[0]), converted<Part> (x.part[1]), 0, 1, 2,
                                            3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
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
};

// The sound sources: reading their tables. The elements of a vector are voices, or successive samples of one
// voice.
template <int width>
class Sources
{
    using V = Vectors<width>;
    using Real = typename V::Real;
    using Bits = typename V::Bits;
    using Double = typename V::Double;
    using Doubles = typename V::Doubles;

public:
    // Where an oscillator reads, vector by vector.
    struct Reads
    {
        Bits index[longestRun];
        Real fraction[longestRun];         // of the full read
        Doubles exactFraction[longestRun]; // of the plain read
    };

    // How it is read: Oscillator::tick, and tickFull without and with a pulse offset.
    enum class Kind
    {
        plain,
        full,
        shifted
    };

    static Kind kindOf (const OscillatorLanes& source)
    {
        if (!source.isFull)
            return Kind::plain;
        return source.pulseOffset == 0.0f ? Kind::full : Kind::shifted;
    }

    // Vector n is to be read at `phase`, which is below the length.
    template <Kind kind>
    [[gnu::always_inline]] static inline void readAt (const Doubles& phase, const OscillatorLanes& source,
                                                      Reads& reads, int n)
    {
        const auto index = V::template truncated<kind == Kind::full> (phase);
        reads.index[n] = index;
        if constexpr (kind == Kind::plain)
            reads.exactFraction[n] = V::difference (phase, V::widened (index));
        else if constexpr (kind == Kind::full)
            reads.fraction[n] = V::narrowed (phase) - V::template converted<Real> (index);
        else
            reads.fraction[n] = shiftedPosition (phase, source.pulseOffset, source.length) -
                                V::template converted<Real> (index);
    }

    // A source without a table.
    static void standStill (Reads& reads, int vectors)
    {
        for (int n = 0; n < vectors; ++n)
        {
            reads.index[n] = Bits{};
            reads.fraction[n] = Real{};
            reads.exactFraction[n] = Doubles{};
        }
    }

    // The two oscillators, `vectors` of them.
    [[gnu::noinline]] static void mix (const VoiceLanes& voices, const Reads& reads1, const Reads& reads2,
                                       int vectors, Real* out)
    {
        const float* const table1 = tableOf (voices.osc1);
        const float* const table2 = tableOf (voices.osc2);
        const float level1 = voices.osc1.level;
        const float level2 = voices.osc2.level;
        if (!voices.osc1.interpolates)
            for (int n = 0; n < vectors; ++n)
                out[n] = readNearest (table1, reads1, n) * level1 + readNearest (table2, reads2, n) * level2;
        else if (voices.osc2.isFull)
            for (int n = 0; n < vectors; ++n)
                out[n] = readFull (table1, reads1, n) * level1 + readFull (table2, reads2, n) * level2;
        else
            for (int n = 0; n < vectors; ++n)
                out[n] = readFull (table1, reads1, n) * level1 + readPlain (table2, reads2, n) * level2;
    }

    [[gnu::noinline]] static void addNoise (const OscillatorLanes& noise, const Reads& reads, int vectors,
                                            Real* out)
    {
        const float* const table = tableOf (noise);
        const float level = noise.level;
        if (!noise.interpolates)
            for (int n = 0; n < vectors; ++n)
                out[n] += readNearest (table, reads, n) * level;
        else
            for (int n = 0; n < vectors; ++n)
                out[n] += readPlain (table, reads, n) * level;
    }

private:
    // Oscillator::readPosition.
    [[gnu::always_inline]] static inline Real shiftedPosition (Doubles phase, float offset, double length)
    {
        for (Double& p : phase.part)
            p += static_cast<double> (offset);
        const float end = static_cast<float> (length) + offset;
        const auto position = V::narrowed (phase);
        return position >= end ? position - end : position;
    }

    [[gnu::always_inline]] static inline Real readPlain (const float* table, const Reads& reads, int n)
    {
        Real value;
        Real next;
        readPairs (table, reads.index[n], value, next);
        return V::narrowed (
            V::sum (V::widened (value), V::product (reads.exactFraction[n], V::widened (next - value))));
    }

    [[gnu::always_inline]] static inline Real readFull (const float* table, const Reads& reads, int n)
    {
        Real value;
        Real next;
        readPairs (table, reads.index[n], value, next);
        return value + reads.fraction[n] * (next - value);
    }

    // Without interpolation.
    [[gnu::always_inline]] static inline Real readNearest (const float* table, const Reads& reads, int n)
    {
        Real value;
        Real next;
        readPairs (table, reads.index[n], value, next);
        return value;
    }

    static const float* tableOf (const OscillatorLanes& source)
    {
        static constexpr float silence[2] = {};
        return source.table != nullptr ? source.table : silence;
    }

    // Two neighbouring samples of a table for each lane. One 64-bit load fetches both: that is faster here
    // than the gather instructions.
    [[gnu::always_inline]] static inline void readPairs (const float* table, const Bits& indices, Real& first,
                                                         Real& second)
    {
        struct [[gnu::packed, gnu::may_alias]] Pair
        {
            double both;
        };
        const auto* const index = reinterpret_cast<const std::int32_t*> (&indices);
        using Pairs = typename V::Pairs;
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
            const Real a = reinterpret_cast<Real> (
                Pairs{ pair (0), pair (1), pair (4), pair (5), pair (8), pair (9), pair (12), pair (13) });
            const Real b = reinterpret_cast<Real> (
                Pairs{ pair (2), pair (3), pair (6), pair (7), pair (10), pair (11), pair (14), pair (15) });
            first = __builtin_shufflevector (a, b, 0, 2, 16, 18, 4, 6, 20, 22, 8, 10, 24, 26, 12, 14, 28, 30);
            second =
                __builtin_shufflevector (a, b, 1, 3, 17, 19, 5, 7, 21, 23, 9, 11, 25, 27, 13, 15, 29, 31);
        }
    }
};

// The next sample from n on at which some lane is due, `end` if there is none before.
[[gnu::always_inline]] inline int nextDue (const DueLanes& due, int n, int end)
{
    const std::uint64_t ahead = due.samples >> n;
    const int next = ahead != 0 ? n + __builtin_ctzll (ahead) : end;
    return next < end ? next : end;
}

// Where one voice's oscillators read, along time: the elements of a vector are successive samples.
class AlongTime
{
public:
    static constexpr int width = VOICE_KERNEL_WIDTH < 8 ? VOICE_KERNEL_WIDTH : 8;
    using V = Vectors<width>;
    using Double = V::Double;
    using Reader = Sources<width>;

    // The sources of one voice, a run, into out[0 .. longestRun-1].
    static void mix (VoiceLanes& voices, std::size_t lane, int samples, float* out)
    {
        const bool followsLfo = voices.lfoPitchDepth > 0.0f;
        const int vectors = (samples + width - 1) / width;
        auto* const mixed = reinterpret_cast<V::Real*> (out);
        Reader::Reads reads1;
        Reader::Reads reads2;
        findReads (voices, voices.osc1, followsLfo, lane, samples, reads1);
        findReads (voices, voices.osc2, followsLfo, lane, samples, reads2);
        Reader::mix (voices, reads1, reads2, vectors, mixed);
        if (voices.noiseSounds)
        {
            findReads (voices, voices.noise, false, lane, samples, reads1);
            Reader::addNoise (voices.noise, reads1, vectors, mixed);
        }
    }

    // Samples n to end - 1, and some behind them that are yet to come.
    [[gnu::always_inline]] static inline void fill (float* out, int n, int end, float value)
    {
        for (; n < end; n += width)
            reinterpret_cast<Anywhere<V::Real>*> (out + n)->value = V::Real{} + value;
    }

    // start + step, that + step and so on, each sum rounded to 32 bits. Between two powers of two all floats
    // lie equally far apart, and there the sums are all rounded by the same amount, but perhaps for the first
    // (a tie goes to the even neighbour, from where all later ties go the same way). Answers the last.
    [[gnu::always_inline]] static inline float addRepeatedly (float start, float step, int samples,
                                                              float* out)
    {
        const float first = start + step;
        const float each = (first + step) - first;
        const float beyond = first + static_cast<float> (samples) * each;
        constexpr unsigned mantissaBits = 23;
        if ((__builtin_bit_cast(std::uint32_t, start) ^ __builtin_bit_cast(std::uint32_t, beyond)) >>
                mantissaBits !=
            0)
        {
            for (int n = 0; n < samples; ++n)
                out[n] = start += step;
            return start;
        }
        typename V::Real count;
        for (int k = 0; k < width; ++k)
            count[k] = static_cast<float> (k);
        for (int n = 0; n < samples; n += width)
        {
            V::at<V::Real> (out + n) = first + count * each;
            count += static_cast<float> (width);
        }
        return out[samples - 1];
    }

private:
    // `reads` get the vectors that the next samples fill, the last one perhaps in part.
    [[gnu::noinline]] static void findReads (const VoiceLanes& voices, OscillatorLanes& source,
                                             bool followsLfo, std::size_t lane, int samples,
                                             Reader::Reads& reads)
    {
        if (source.table == nullptr)
            return Reader::standStill (reads, (samples + width - 1) / width);
        alignas (64) double phases[longestRun + width];
        findPhases (voices, source, followsLfo, lane, samples, phases);
        for (int n = samples; n % width != 0; ++n)
            phases[n] = 0.0;
        using Kind = Reader::Kind;
        const auto kind = Reader::kindOf (source);
        if (kind == Kind::plain)
            readAt<Kind::plain> (phases, source, samples, reads);
        else if (kind == Kind::full)
            readAt<Kind::full> (phases, source, samples, reads);
        else
            readAt<Kind::shifted> (phases, source, samples, reads);
    }

    // A vector that lies anywhere in an array.
    template <typename Vector>
    struct [[gnu::packed, gnu::may_alias]] Anywhere
    {
        Vector value;
    };

    template <Reader::Kind kind>
    [[gnu::always_inline]] static inline void readAt (const double* phases, const OscillatorLanes& source,
                                                      int samples, Reader::Reads& reads)
    {
        for (int n = 0; n < samples; n += width)
        {
            V::Doubles phase;
            for (int part = 0; part < V::parts; ++part)
                phase.part[part] = V::at<Double> (phases + n + part * (width / V::parts));
            Reader::readAt<kind> (phase, source, reads, n / width);
        }
    }

    // Oscillator::updateIncrement.
    static void updateIncrement (OscillatorLanes& source, std::size_t lane)
    {
        float hz = source.noteHz.of[lane];
        if (source.glides)
            hz = source.glideCurrent.of[lane] = pitchLaw::glided (
                source.glideCurrent.of[lane], source.glideTarget.of[lane], source.glideDelta.of[lane]);
        const float increment = pitchLaw::incrementOf (
            hz, source.tuneCorrection, source.lfoPitchFactor.of[lane], source.masterPitchFactor,
            source.bendHz.of[lane], source.fineHz.of[lane], source.incrementPerHz);
        source.increment.of[lane] = increment;
        source.phase.of[lane] = startedAnew (source.phase.of[lane], increment, source.length);
    }

    // A rewound cycle starts one increment in.
    [[gnu::always_inline]] static inline double startedAnew (double phase, float increment, double length)
    {
        return increment > 0.0f && phase == 0.0 ? static_cast<double> (increment) + length : phase;
    }

    [[gnu::always_inline]] static inline double wrapped (double phase, double length)
    {
        while (__builtin_expect (phase >= length, false))
            phase -= length;
        return phase;
    }

    // Whether x is a multiple of 2^-32. Sums of such numbers, and multiples, are exact as long as they are
    // below 2^20, in whatever order they are taken.
    static bool addsExactly (double x)
    {
        constexpr double rounder = 1.5 * (1 << 20); // a double this large has 32 bits behind the point
        return (x + rounder) - rounder == x;
    }

    // Samples n to end - 1, in which the pitch stays.
    static void walk (OscillatorLanes& source, std::size_t lane, int n, int end, double* phases)
    {
        const double length = source.length;
        const auto step = static_cast<double> (source.increment.of[lane]);
        double phase = wrapped (source.phase.of[lane], length);
        if (addsExactly (phase) && addsExactly (step) && step * width <= length)
        {
            const int inOneCycle =
                step * longestRun <= length ? longestRun : static_cast<int> (length / step);
            while (n < end)
            {
                const int samples = end - n < inOneCycle ? end - n : inOneCycle;
                multiples (phase, step, length, samples, phases + n);
                n += samples;
                phase = wrapped (phases[n - 1] + step, length);
            }
        }
        else
        {
            for (; n < end; ++n)
            {
                phases[n] = phase;
                phase = wrapped (phase + step, length);
            }
        }
        source.phase.of[lane] = phases[end - 1] + step;
    }

    // start, start + step and so on, which pass the end of the cycle once at the most.
    [[gnu::always_inline]] static inline void multiples (double start, double step, double length,
                                                         int samples, double* phases)
    {
        constexpr int partWidth = width / V::parts;
        Double count;
        for (int k = 0; k < partWidth; ++k)
            count[k] = k;
        Double phase = start + count * step;
        for (int n = 0; n < samples; n += partWidth)
        {
            reinterpret_cast<Anywhere<Double>*> (phases + n)->value =
                phase >= length ? phase - length : phase;
            phase += partWidth * step;
        }
    }

    // Samples n to end - 1 of a glide.
    static void glide (OscillatorLanes& source, std::size_t lane, int n, int end, double* phases)
    {
        using Real = V::Real;
        alignas (64) float hz[longestRun];
        float& current = source.glideCurrent.of[lane];
        const int samples = end - n;
        for (int k = 0; k < samples; ++k)
            hz[k] = current =
                pitchLaw::glided (current, source.glideTarget.of[lane], source.glideDelta.of[lane]);
        for (int k = samples; k % width != 0; ++k)
            hz[k] = current;

        alignas (64) float increments[longestRun];
        for (int k = 0; k < samples; k += width)
            V::at<Real> (increments + k) = pitchLaw::incrementOf<Real> (
                V::at<Real> (hz + k), source.tuneCorrection, Real{} + source.lfoPitchFactor.of[lane],
                source.masterPitchFactor, Real{} + source.bendHz.of[lane], Real{} + source.fineHz.of[lane],
                source.incrementPerHz);

        double phase = source.phase.of[lane];
        for (int k = 0; k < samples; ++k)
        {
            phase = wrapped (startedAnew (phase, increments[k], source.length), source.length);
            phases[n + k] = phase;
            phase += static_cast<double> (increments[k]);
        }
        source.phase.of[lane] = phase;
        source.increment.of[lane] = increments[samples - 1];
    }

    static void findPhases (const VoiceLanes& voices, OscillatorLanes& source, bool followsLfo,
                            std::size_t lane, int samples, double* phases)
    {
        const bool glidesAlways = source.isFull && source.glides;
        const bool isGliding = glidesAlways && source.glideCurrent.of[lane] != source.glideTarget.of[lane];
        if (glidesAlways && !isGliding) // once it has arrived, a glide changes nothing more
            updateIncrement (source, lane);
        for (int n = 0; n < samples;)
        {
            const int update = followsLfo ? nextDue (voices.pitchDue, n, samples) : samples;
            const int end = update < samples ? update + 1 : samples;
            if (isGliding)
                glide (source, lane, n, end, phases);
            else
                walk (source, lane, n, end, phases);
            n = end;
            if (update < samples && (voices.pitchDue.lanes[update] >> lane & 1u) != 0)
            {
                source.lfoPitchFactor.of[lane] =
                    1.0f + voices.lfo[update] * voices.lfoPitchDepth / parameters::pitchUnitHz;
                updateIncrement (source, lane);
            }
        }
    }
};

template <int width>
class Kernel
{
    using V = Vectors<width>;
    using Real = typename V::Real;
    using Double = typename V::Double;
    using Doubles = typename V::Doubles;
    using Reader = Sources<width>;
    using Reads = typename Reader::Reads;
    static constexpr unsigned allLanes = (1u << width) - 1u;

    // One vector for each sample of a run.
    struct alignas (64) Rows
    {
        Real at[longestRun + (width == 1 ? AlongTime::width : 0)];
    };

    template <typename Number>
    [[gnu::always_inline]] static inline Real& lanes (Lanes<Number>& numbers, std::size_t first)
    {
        return V::lanes (numbers, first);
    }

    [[gnu::always_inline]] static inline Doubles& doubles (Lanes<double>& numbers, std::size_t first)
    {
        return V::template at<Doubles> (&numbers.of[first]);
    }

    // A stretch of samples in which the pitch stays.
    template <typename Reader::Kind kind>
    [[gnu::noinline]] static void readStretch (OscillatorLanes& source, std::size_t first, int n, int end,
                                               Reads& reads)
    {
        const double length = source.length;
        const Doubles step = V::widened (lanes (source.increment, first));
        Doubles phase = doubles (source.phase, first);
        for (; n < end; ++n)
        {
            for (Double& p : phase.part)
                p = p >= length ? p - length : p;
            Reader::template readAt<kind> (phase, source, reads, n);
            phase = V::sum (phase, step);
        }
        doubles (source.phase, first) = phase;
    }

    // The same where the pitch perhaps glides, and where one step may pass that many ends of the cycle: more
    // than one only at sample rates far below the usual.
    template <typename Reader::Kind kind>
    [[gnu::noinline]] static void readRareStretch (OscillatorLanes& source, std::size_t first, int n, int end,
                                                   int wraps, bool glides, Reads& reads)
    {
        const double length = source.length;
        Pitch pitch (source, first);
        Doubles step = V::widened (pitch.increment);
        Doubles phase = doubles (source.phase, first);
        for (; n < end; ++n)
        {
            if (glides)
            {
                pitch.update ();
                step = V::widened (pitch.increment);
                phase = startedAnew (phase, step, length);
            }
            for (int wrap = 0; wrap < wraps; ++wrap)
            {
                for (Double& p : phase.part)
                    p = p >= length ? p - length : p;
            }
            Reader::template readAt<kind> (phase, source, reads, n);
            phase = V::sum (phase, step);
        }
        doubles (source.phase, first) = phase;
        lanes (source.glideCurrent, first) = pitch.current;
        lanes (source.increment, first) = pitch.increment;
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
        for (int k = 0; k < V::parts; ++k)
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
        const auto due = V::maskOf (lanesByBit);
        Pitch pitch (source, first);
        pitch.update ();
        Real& current = lanes (source.glideCurrent, first);
        Real& increment = lanes (source.increment, first);
        current = due ? pitch.current : current;
        increment = due ? pitch.increment : increment;
        Doubles& phase = doubles (source.phase, first);
        phase = startedAnew (phase, V::widened (due ? increment : Real{}), source.length);
    }

    static bool isUnderWay (const OscillatorLanes& source, std::size_t first)
    {
        for (std::size_t lane = first; lane < first + width; ++lane)
        {
            if (source.glideCurrent.of[lane] != source.glideTarget.of[lane])
                return true;
        }
        return false;
    }

    template <typename Reader::Kind kind>
    static void readPositions (const VoiceLanes& voices, OscillatorLanes& source, bool followsLfo,
                               std::size_t first, int samples, Reads& reads)
    {
        // Once every lane has arrived, a glide changes nothing more.
        const bool glidesAlways = source.isFull && source.glides;
        const bool isGliding = glidesAlways && isUnderWay (source, first);
        if (glidesAlways && !isGliding)
            updateIncrement (source, first, allLanes);
        const float longestStep = pitchLaw::highestHz * source.incrementPerHz / pitchLaw::incrementDivisor;
        const int wraps = 1 + static_cast<int> (longestStep / static_cast<float> (source.length));
        for (int n = 0; n < samples;)
        {
            int end = samples;
            if (followsLfo && nextDue (voices.pitchDue, n, end) < end)
                end = nextDue (voices.pitchDue, n, end) + 1;
            if (wraps > 1 || isGliding)
                readRareStretch<kind> (source, first, n, end, wraps, isGliding, reads);
            else
                readStretch<kind> (source, first, n, end, reads);
            n = end;

            const unsigned due = voices.pitchDue.lanes[n - 1] >> first & allLanes;
            if (followsLfo && due != 0)
            {
                const float factor =
                    1.0f + voices.lfo[n - 1] * voices.lfoPitchDepth / parameters::pitchUnitHz;
                Real& lfoFactor = lanes (source.lfoPitchFactor, first);
                lfoFactor = V::maskOf (due) ? Real{} + factor : lfoFactor;
                updateIncrement (source, first, due);
            }
        }
    }

    [[gnu::noinline]] static void findReads (const VoiceLanes& voices, OscillatorLanes& source,
                                             bool followsLfo, std::size_t first, int samples, Reads& reads)
    {
        using Kind = typename Reader::Kind;
        const auto kind = Reader::kindOf (source);
        if (source.table == nullptr)
            Reader::standStill (reads, samples);
        else if (kind == Kind::plain)
            readPositions<Kind::plain> (voices, source, followsLfo, first, samples, reads);
        else if (kind == Kind::full)
            readPositions<Kind::full> (voices, source, followsLfo, first, samples, reads);
        else
            readPositions<Kind::shifted> (voices, source, followsLfo, first, samples, reads);
    }

    [[gnu::noinline]] static void mixSources (VoiceLanes& voices, std::size_t first, int samples, Rows& mix)
    {
        if constexpr (width == 1)
        {
            AlongTime::mix (voices, first, samples, mix.at);
        }
        else if constexpr (width < AlongTime::width)
        {
            alignas (64) float along[width][longestRun];
            for (std::size_t lane = 0; lane < width; ++lane)
            {
                if (first + lane < voices.used)
                    AlongTime::mix (voices, first + lane, samples, along[lane]);
                else
                    AlongTime::fill (along[lane], 0, longestRun, 0.0f);
            }
            for (int n = 0; n < samples; n += 4)
                turn (&along[0][n], longestRun, &mix.at[n]);
        }
        else
        {
            const bool followsLfo = voices.lfoPitchDepth > 0.0f;
            Reads reads1;
            Reads reads2;
            findReads (voices, voices.osc1, followsLfo, first, samples, reads1);
            findReads (voices, voices.osc2, followsLfo, first, samples, reads2);
            Reader::mix (voices, reads1, reads2, samples, mix.at);
            if (voices.noiseSounds)
            {
                findReads (voices, voices.noise, false, first, samples, reads1);
                Reader::addNoise (voices.noise, reads1, samples, mix.at);
            }
        }
    }

    // Four samples of each of four voices become four vectors.
    [[gnu::always_inline]] static inline void turn (const float* from, int distance, Real* to)
    {
        const Real& a = V::template at<Real> (from);
        const Real& b = V::template at<Real> (from + distance);
        const Real& c = V::template at<Real> (from + 2 * distance);
        const Real& d = V::template at<Real> (from + 3 * distance);
        const Real ab01 = __builtin_shufflevector (a, b, 0, 4, 1, 5);
        const Real ab23 = __builtin_shufflevector (a, b, 2, 6, 3, 7);
        const Real cd01 = __builtin_shufflevector (c, d, 0, 4, 1, 5);
        const Real cd23 = __builtin_shufflevector (c, d, 2, 6, 3, 7);
        to[0] = __builtin_shufflevector (ab01, cd01, 0, 1, 4, 5);
        to[1] = __builtin_shufflevector (ab01, cd01, 2, 3, 6, 7);
        to[2] = __builtin_shufflevector (ab23, cd23, 0, 1, 4, 5);
        to[3] = __builtin_shufflevector (ab23, cd23, 2, 3, 6, 7);
    }

    // Both envelopes in one loop: each addition waits for the one before, and so they wait together.
    [[gnu::noinline]] static void renderEnvelopes (VoiceLanes& voices, std::size_t first, int samples,
                                                   Rows& amplitudes, Rows& env2)
    {
        Real amplitude = lanes (voices.amplitude.level, first);
        Real level2 = lanes (voices.env2.level, first);
        const Real amplitudeStep = lanes (voices.amplitude.step, first);
        const Real step2 = lanes (voices.env2.step, first);
        if constexpr (width == 1)
        {
            amplitude = AlongTime::addRepeatedly (amplitude, amplitudeStep, samples, amplitudes.at);
            level2 = AlongTime::addRepeatedly (level2, step2, samples, env2.at);
        }
        else
        {
            for (int n = 0; n < samples; ++n)
            {
                amplitudes.at[n] = amplitude += amplitudeStep;
                env2.at[n] = level2 += step2;
            }
        }
        lanes (voices.amplitude.level, first) = amplitude;
        lanes (voices.env2.level, first) = level2;
        insertColumns (voices.amplitude, first, samples, amplitudes);
        insertColumns (voices.env2, first, samples, env2);
    }

    static void insertColumns (const EnvelopeLanes& envelope, std::size_t first, int samples, Rows& levels)
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
        const Real distance = V::magnitudeOf (target - base);
        const Real slew = distance / (divisor * (1.0f / distance));
        const Real raised = base < 0.0f ? Real{} : base;
        const Real limited = raised > 1.0f ? Real{} + 1.0f : raised;
        const Real moved = target > limited ? limited + slew : limited - slew;
        return target != base ? moved : base;
    }

    // parameters::cutoffHz and trackedCutoffHz.
    static Real cutoffOf (const VoiceLanes& voices, Real control, Real keyFactor)
    {
        Doubles hz = V::widened (control);
        const Doubles key = V::widened (keyFactor);
        for (int k = 0; k < V::parts; ++k)
        {
            Double& x = hz.part[k];
            x = x * x;
            if (voices.keyTracks)
                x = (x + parameters::trackedFoot) * parameters::trackedScale * key.part[k] *
                    parameters::cutoffSpanHz;
            else
                x = x * parameters::cutoffSpanHz + static_cast<double> (parameters::lowestCutoffHz);
        }
        const Real raised = V::narrowed (hz) < parameters::lowestCutoffHz
                                ? Real{} + parameters::lowestCutoffHz
                                : V::narrowed (hz);
        return raised > parameters::highestCutoffHz ? Real{} + parameters::highestCutoffHz : raised;
    }

    // The filter coefficient of every sample. The cutoff itself moves once per interval.
    [[gnu::noinline]] static void renderCutoff (VoiceLanes& voices, std::size_t first, int samples,
                                                const Rows& env2, Rows& coefficients)
    {
        Real& base = lanes (voices.cutoffBase, first);
        Real& hz = lanes (voices.cutoffHz, first);
        Real coefficient = lanes (voices.coefficient, first);
        bool moves = true;
        for (int n = 0; n < samples;)
        {
            const int next = nextDue (voices.cutoffDue, n, samples);
            if constexpr (width == 1)
                AlongTime::fill (coefficients.at, n, next, coefficient);
            else
                for (int k = n; k < next; ++k)
                    coefficients.at[k] = coefficient;
            n = next;
            if (n == samples)
                break;
            const auto due = V::maskOf (voices.cutoffDue.lanes[n] >> first);
            if (moves)
            {
                const Real before = base;
                base = due ? slewed (base, voices.cutoffTarget, voices.slewDivisor) : base;
                if constexpr (width == 1) // what is too small a step now is so until the end
                    moves = !due || base != before;
            }
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
        static Real magnitude (Real x) { return V::magnitudeOf (x); }
        Real operator() (Real x) const
        {
            return V::magnitudeOf (x) < std::numeric_limits<float>::min () ? Real{} : x;
        }
    };

    // Stores everything as it is and remembers the smallest.
    struct Watching
    {
        Real smallest = Real{} + 1.0f;

        static Real magnitude (Real x) { return V::magnitudeOf (x); }
        [[gnu::always_inline]] inline Real operator() (Real x)
        {
            const Real size = V::magnitudeOf (x);
            smallest = size < smallest ? size : smallest;
            return x;
        }
    };

    template <typename Keep>
    [[gnu::noinline]] static void filterRun (const VoiceLanes& voices, std::size_t first, int samples,
                                             const Rows& mix, const Rows& coefficients, const Rows& levels,
                                             Rows& sound, Memory& memory, Keep& keep)
    {
        Memory m = memory;
        const filterCore::Switches switches = voices.filterSwitches;
        const filterCore::FixedCoefficients fixed = voices.filterFixed;
        const bool smooths = switches.smooths && switches.type == filterCore::lowPass;
        const Real damping = V::template at<Real> (&voices.damping.of[first]);
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
                                                 const Rows& mix, const Rows& coefficients,
                                                 const Rows& levels, Rows& sound)
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
    [[gnu::noinline]] static void addVoices (const Rows& sound, std::size_t voices, float* out, int samples)
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
        Rows levels;
        Rows env2;
        Rows coefficients;
        Rows mix;
        Rows sound;
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
