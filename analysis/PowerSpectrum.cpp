#include "analysis/PowerSpectrum.h"

#include <kiss_fftr.h>

#include <cmath>
#include <cstdlib>
#include <map>
#include <memory>
#include <numbers>

namespace analysis
{
namespace
{
struct PlanDeleter
{
    void operator() (kiss_fftr_state* plan) const { std::free (plan); }
};

// Made once for each size; making one costs more than using it.
kiss_fftr_state* planFor (int size)
{
    static thread_local std::map<int, std::unique_ptr<kiss_fftr_state, PlanDeleter>> plans;
    auto& plan = plans[size];
    if (!plan)
        plan.reset (kiss_fftr_alloc (size, 0, nullptr, nullptr));
    return plan.get ();
}
}

std::vector<double> powerSpectrum (std::span<const float> audio, std::size_t start, int size)
{
    std::vector<float> windowed (static_cast<std::size_t> (size));
    double windowPower = 0.0;
    for (std::size_t n = 0; n < windowed.size (); ++n)
    {
        const double weight = 0.5 - 0.5 * std::cos (2.0 * std::numbers::pi * static_cast<double> (n) / size);
        windowPower += weight * weight;
        if (start + n < audio.size ())
            windowed[n] = static_cast<float> (weight * static_cast<double> (audio[start + n]));
    }
    std::vector<kiss_fft_cpx> bins (windowed.size () / 2 + 1);
    kiss_fftr (planFor (size), windowed.data (), bins.data ());
    std::vector<double> power;
    power.reserve (bins.size ());
    for (const kiss_fft_cpx& bin : bins)
        power.push_back ((static_cast<double> (bin.r) * static_cast<double> (bin.r) +
                          static_cast<double> (bin.i) * static_cast<double> (bin.i)) /
                         (windowPower * size));
    return power;
}
}
