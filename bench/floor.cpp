// The least that sixteen voices of this kind can cost: a bare loop to measure the instrument against. Per
// voice and sample two interpolated table reads, drive with a soft clip, a state-variable filter, an envelope
// step and the sum; as `whole` also DC blocker, colour section and the second envelope. It does not sound
// like the instrument: phases have 32 bits, tables hold {value, difference}, products and sums are fused,
// sums are taken in any order, and nothing ever changes.
#include <array>
#include <cstdint>

#include <immintrin.h>

#include <benchmark/benchmark.h>

namespace
{
constexpr int lanes = 8;
constexpr int groups = 2;
constexpr int blockLength = 64;
constexpr int tableBits = 10;
constexpr int fractionBits = 32 - tableBits;

using Real [[gnu::vector_size (4 * lanes)]] = float;
using Bits [[gnu::vector_size (4 * lanes)]] = std::uint32_t;
using Signed [[gnu::vector_size (4 * lanes)]] = std::int32_t;

struct Pair
{
    float value;
    float difference;
};

struct Group
{
    Bits phase1 = {};
    Bits phase2 = {};
    Bits step1 = {};
    Bits step2 = {};
    Real drive = {};
    Real dc = {};
    Real colourBand = {};
    Real colourLow = {};
    Real band = {};
    Real low = {};
    Real coefficient = {};
    Real damping = {};
    Real level1 = {};
    Real level2 = {};
    Real slope = {};
};

std::array<Pair, 1 << tableBits> table;

[[gnu::always_inline]] inline Real magnitude (Real x)
{
    return reinterpret_cast<Real> (reinterpret_cast<Signed> (x) & 0x7FFFFFFF);
}

[[gnu::always_inline]] inline Real read (Bits phase)
{
    alignas (32) std::uint32_t index[lanes];
    _mm256_store_si256 (reinterpret_cast<__m256i*> (index),
                        _mm256_srli_epi32 (reinterpret_cast<__m256i> (phase), fractionBits));
    const auto* const pairs = reinterpret_cast<const double*> (table.data ());
    const auto two = [&index, pairs] (int a, int b)
    { return _mm_loadh_pd (_mm_load_sd (pairs + index[a]), pairs + index[b]); };
    const auto four = [&two] (int a, int b)
    {
        return _mm256_castpd_ps (
            _mm256_insertf128_pd (_mm256_castpd128_pd256 (two (a, a + 1)), two (b, b + 1), 1));
    };
    const __m256 a = four (0, 4);
    const __m256 b = four (2, 6);
    const Real value = _mm256_shuffle_ps (a, b, 0x88);
    const Real difference = _mm256_shuffle_ps (a, b, 0xDD);
    const Bits fraction = phase & ((1u << fractionBits) - 1u);
    return value + __builtin_convertvector(reinterpret_cast<Signed> (fraction), Real) *
                       (1.0f / (1 << fractionBits)) * difference;
}

template <bool whole>
[[gnu::always_inline]] inline Real step (Group& g)
{
    Real x = read (g.phase1) + read (g.phase2);
    g.phase1 += g.step1;
    g.phase2 += g.step2;
    x += 0.4f * g.drive;
    g.drive = x;
    const Real size = magnitude (x);
    const Real clipped = x * (1.0f - size * 0.125f);
    const Real ceiling = x > 0.0f ? Real{} + 2.0f : Real{} - 1.0f;
    x = size > 4.0f ? ceiling : clipped;
    if (whole)
    {
        const Real dc = g.dc;
        g.dc += (x - dc) * 0.0014f;
        x -= dc;
        const Real high = x - (g.colourLow + g.colourBand * 0.7f);
        g.colourBand += high * 0.142f;
        g.colourLow += g.colourBand * 0.142f;
        x += g.colourBand * 0.28f;
        g.level2 += g.slope;
    }
    const Real high = x - (g.low + g.band * g.damping);
    g.band += high * g.coefficient;
    g.low += g.band * g.coefficient;
    g.level1 += g.slope;
    return g.low * g.level1;
}

template <bool whole>
void floorOfSixteenVoices (benchmark::State& state)
{
    for (std::size_t n = 0; n < table.size (); ++n)
        table[n] = { 1.0f - 2.0f * static_cast<float> (n) / 1024.0f, -2.0f / 1024.0f };
    std::array<Group, groups> group;
    for (int voice = 0; voice < lanes * groups; ++voice)
    {
        Group& g = group[static_cast<std::size_t> (voice / lanes)];
        const auto frequency = static_cast<std::uint32_t> (12741000 + 900000 * voice);
        g.step1[voice % lanes] = frequency;
        g.step2[voice % lanes] = frequency + 38000;
        g.coefficient[voice % lanes] = 0.1f + 0.01f * static_cast<float> (voice);
        g.damping[voice % lanes] = 0.4f;
        g.level1[voice % lanes] = 0.5f;
        g.slope[voice % lanes] = 1e-9f;
    }
    std::array<float, blockLength> out;
    for ([[maybe_unused]] auto _ : state)
    {
        std::array<Real, blockLength> sums = {};
        for (Group& voices : group)
        {
            Group g = voices;
            for (Real& sum : sums)
                sum += step<whole> (g);
            voices = g;
        }
        for (std::size_t n = 0; n < out.size (); ++n)
        {
            const Real s = sums[n];
            out[n] = ((s[0] + s[4]) + (s[1] + s[5])) + ((s[2] + s[6]) + (s[3] + s[7]));
        }
        benchmark::DoNotOptimize (out);
        benchmark::ClobberMemory ();
    }
    using benchmark::Counter;
    state.counters["ns/voice-sample"] =
        Counter (static_cast<double> (state.iterations ()) * blockLength * lanes * groups * 1e-9,
                 static_cast<Counter::Flags> (Counter::kIsRate | Counter::kInvert));
}

// What one operation costs that waits for the one before: three cycles of the processor.
void dependentAddition (benchmark::State& state)
{
    constexpr int additions = 1000;
    float x = 1.0f;
    for ([[maybe_unused]] auto _ : state)
    {
        float sum = x;
        for (int n = 0; n < additions; ++n)
            sum += x;
        benchmark::DoNotOptimize (sum);
        benchmark::DoNotOptimize (x);
    }
    using benchmark::Counter;
    state.counters["ns/sample"] = Counter (static_cast<double> (state.iterations ()) * additions * 1e-9,
                                           static_cast<Counter::Flags> (Counter::kIsRate | Counter::kInvert));
}
}

void addFloorRows ()
{
    if (__builtin_cpu_supports ("avx2") && __builtin_cpu_supports ("fma"))
    {
        benchmark::RegisterBenchmark ("floor/avx2", floorOfSixteenVoices<false>);
        benchmark::RegisterBenchmark ("floor/avx2/whole", floorOfSixteenVoices<true>);
    }
    benchmark::RegisterBenchmark ("dependent addition", dependentAddition);
}
