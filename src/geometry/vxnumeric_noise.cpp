#include "vxnumeric.h"

#include <cstdint>

namespace {

/** x without its fraction, 0 where it is not finite. */
double wholePart(double x)
{
    return std::isfinite(x) ? std::trunc(x) : 0;
}

/** A whole number modulo 2^32. */
std::uint32_t wrapped(double whole)
{
    return static_cast<std::uint32_t>(static_cast<std::int64_t>(std::fmod(whole, 4294967296.0)));
}

double latticeNoise(std::uint32_t n)
{
    // Unsigned, so that the wrapping that scrambles the bits is defined.
    const std::uint32_t m = (n << 13) ^ n;
    const std::uint32_t v = (m * (m * m * 15731u + 789221u) + 1376312589u) & 0x7fffffffu;
    return 1.0 - v * 9.313225746154785e-10; // 2^-30
}

} // namespace

double vxNumeric::intNoise_1D(int n)
{
    return latticeNoise(static_cast<std::uint32_t>(n));
}

double vxNumeric::smoothNoise_1D(double x)
{
    return latticeNoise(wrapped(wholePart(x)));
}

double vxNumeric::cosineInterpolate_1D(double a, double b, double x)
{
    // The short pi is part of the look of existing outlines.
    const double f = (1 - std::cos(x * 3.1415927)) * 0.5;
    return a * (1 - f) + b * f;
}

double vxNumeric::cubicInterpolate_1D(double y0, double y1, double y2, double y3, double x)
{
    const double P = (y3 - y2) - (y0 - y1);
    const double Q = (y0 - y1) - P;
    const double R = y2 - y0;
    return P * x * x * x + Q * x * x + R * x + y1;
}

double vxNumeric::interpolateNoise_1D(double x)
{
    const double whole = wholePart(x);
    const std::uint32_t i = wrapped(whole);
    const double fraction = std::isfinite(x) ? x - whole : 0;
    return cosineInterpolate_1D(latticeNoise(i), latticeNoise(i + 1), fraction);
}

double vxNumeric::perlinNoise_1D(double x)
{
    double sum = 0;
    for (int octave = 0; octave < 4; ++octave)
        sum += interpolateNoise_1D(std::ldexp(x, octave)) * std::pow(0.1, octave);
    return sum;
}
