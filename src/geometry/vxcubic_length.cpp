#include "vxcubic_p.h"
#include "vxnumeric_p.h"
#include "vxpair_p.h"

#include <algorithm>

using vxTolerance::machineZero;
using vxTolerance::noTime;

namespace {

/** |B'(t)| as a function of t, set up once for many evaluations. */
class Speed
{
public:
    explicit Speed(const vx::Cubic &c)
        : m_a(coefficientA(c, 0), coefficientA(c, 1)), m_b(coefficientB(c, 0), coefficientB(c, 1)),
          m_c(coefficientC(c, 0), coefficientC(c, 1))
    {
    }

    double operator()(double t) const { return std::sqrt(squared(t)); }

    /** At one time, or at two side by side. */
    template <typename T>
    T squared(T t) const
    {
        const T dx = (m_a.x * t + m_b.x) * t + m_c.x;
        const T dy = (m_a.y * t + m_b.y) * t + m_c.y;
        return dx * dx + dy * dy;
    }

private:
    static double coefficientA(const vx::Cubic &c, int i)
    {
        return 9 * (c.v[2 + i] - c.v[4 + i]) + 3 * (c.v[6 + i] - c.v[i]);
    }
    static double coefficientB(const vx::Cubic &c, int i)
    {
        return 6 * (c.v[i] + c.v[4 + i]) - 12 * c.v[2 + i];
    }
    static double coefficientC(const vx::Cubic &c, int i) { return 3 * (c.v[2 + i] - c.v[i]); }

    vxPoint m_a, m_b, m_c;
};

/**
 * vx::integrate() of a speed by the rule of order 16, to the bit. Squared speeds are computed for all nodes
 * first, which compilers do several at once; they are added up in the same order.
 */
double integrate16(const Speed &speed, double a, double b)
{
    constexpr int half = 8;
    const double *x = vx::gaussAbscissas[16 - 2];
    const double *w = vx::gaussWeights[16 - 2];
    const double A = (b - a) / 2;
    const double B = a + A;
    double above[half];
    double below[half];
    for (int i = 0; i < half; ++i) {
        const double Ax = A * x[i];
        above[i] = speed.squared(B + Ax);
        below[i] = speed.squared(B - Ax);
    }
    double sum = 0;
    for (int i = 0; i < half; ++i)
        sum += w[i] * (std::sqrt(above[i]) + std::sqrt(below[i]));
    return A * sum;
}

/** The same by the rule of order 2, whose weights are 1: for the short steps of Newton's method. */
double integrate2(const Speed &speed, double a, double b)
{
    const double A = (b - a) / 2;
    const double B = a + A;
    const double Ax = A * vx::gaussAbscissas[0][0];
    const vx::Pair squared = speed.squared(vx::Pair{ B + Ax, B - Ax });
    return A * (std::sqrt(squared[0]) + std::sqrt(squared[1]));
}

/** quadratureOrder(), where a call would cost as much as what it computes. */
inline int orderFor(double a, double b)
{
    const double n = std::fabs(b - a) * 32;
    if (n > 15)
        return 16;
    return n > 2 ? static_cast<int>(std::ceil(n)) : 2; // 2 for NaN
}

double integrateSpeed(const Speed &speed, double a, double b)
{
    const int order = orderFor(a, b);
    if (order == 2)
        return integrate2(speed, a, b);
    return order == 16 ? integrate16(speed, a, b) : vx::integrate(speed, a, b, order);
}

/**
 * Whether isStraight() surely denies it: the first handle leaves the chord by far more than it allows. Quick.
 */
bool isSurelyBent(const vx::Cubic &c)
{
    constexpr double farOff = 1e-3;
    constexpr double largest = 1e6; // so that rounding moves that distance by far less
    const vxPoint handle = c.p1().subtract(c.p0());
    const vxPoint chord = c.p3().subtract(c.p0());
    const double cross = handle.cross(chord);
    return cross * cross > farOff * farOff * chord.dot(chord) &&
           std::fabs(c.v[0]) + std::fabs(c.v[1]) + std::fabs(handle.x) + std::fabs(handle.y) < largest;
}

/** Length of a straight curve between two times; its speed is uneven, so the part is cut out. */
double straightLength(vx::Cubic c, double a, double b)
{
    vx::Cubic rest;
    if (b < 1) {
        vx::subdivide(c, b, c, rest);
        a = b != 0 ? a / b : 0;
    }
    if (a > 0)
        vx::subdivide(c, a, rest, c);
    return c.p0().getDistance(c.p3(), false);
}

/**
 * Where the length from start on is offset, which is not 0: forwards within [start, 1], backwards within
 * [0, start]; rangeLength is the length of that range.
 */
double timeWithin(const vx::Cubic &c, double offset, double start, double rangeLength)
{
    const bool forward = offset > 0;
    const double a = forward ? start : 0;
    const double b = forward ? 1 : start;
    const double diff = std::fabs(offset) - rangeLength;
    if (std::fabs(diff) < machineZero)
        return forward ? b : a;
    if (!(diff <= machineZero))
        return noTime;

    // A running sum: each call integrates only the stretch since the last one.
    const Speed speed(c);
    double sum = 0;
    double last = start;
    const auto excess = [&](double t) {
        sum += integrateSpeed(speed, last, t);
        last = t;
        return sum - offset;
    };
    const double t = vx::findRoot(excess, speed, start + offset / rangeLength, a, b, 32, machineZero);
    // A last Newton step may end a rounding error outside, where the curve has no point.
    return std::clamp(t, a, b);
}

} // namespace

int vx::quadratureOrder(double a, double b)
{
    return orderFor(a, b);
}

double vx::length(const Cubic &c, double a, double b)
{
    if (a == 0 && b == 1 && isChord(c))
        return c.p0().getDistance(c.p3()); // what the next line gives, sooner
    if (!isSurelyBent(c) && isStraight(c))
        return straightLength(c, a, b);
    return integrateSpeed(Speed(c), a, b);
}

double vx::timeAtLength(const Cubic &c, double offset, double start)
{
    if (std::isnan(offset) || std::isnan(start))
        return noTime;
    if (start == noTime)
        start = offset < 0 ? 1 : 0;
    if (offset == 0)
        return start;
    if (!(start >= 0 && start <= 1))
        return noTime;
    const bool forward = offset > 0;
    return timeWithin(c, offset, start, length(c, forward ? start : 0, forward ? 1 : start));
}

double vx::timeAtLengthOf(const Cubic &c, double offset, double wholeLength)
{
    if (std::isnan(offset))
        return noTime;
    return offset == 0 ? 0 : timeWithin(c, offset, offset < 0 ? 1 : 0, wholeLength);
}
